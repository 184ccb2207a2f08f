#pragma once

#include <string>
#include <string_view>

namespace manual
{

/// A manual page in the source that man reads. Texts are UTF-8 and may hold anything.
class RoffPage
{
public:
    /// `name` is the page's ("signcheck-check"), `summary` what apropos finds it by.
    RoffPage(const std::string& name, const std::string& summary);

    void Section(std::string_view title);
    void Subsection(std::string_view title);
    void Paragraph(std::string_view text);
    /// A term, bold, and below it, indented, what it is.
    void Item(std::string_view term, std::string_view text);
    /// A line that is shown as it stands.
    void Literal(std::string_view line);

    const std::string& Text() const noexcept { return m_text; }

private:
    void Line(std::string_view text);

    std::string m_text;
};

} // namespace manual
