#include "engine/parameter_text.h"

#include "engine/failure.h"
#include "support/codepage.h"

#include <utility>

namespace engine
{

namespace
{

constexpr std::string_view kSeparator = " | ";

class ParameterReader
{
public:
    explicit ParameterReader(std::string_view text) : m_text(text), m_rest(text) {}

    bool AtEnd() const noexcept { return m_rest.empty(); }

    void Expect(std::string_view text)
    {
        if (!m_rest.starts_with(text))
        {
            Refuse("'" + std::string(text) + "' expected");
        }
        m_rest.remove_prefix(text.size());
    }

    std::string QuotedPath()
    {
        Expect("\"");
        const std::size_t end = m_rest.find('"');
        if (end == std::string_view::npos || end == 0)
        {
            Refuse("path in quotes expected");
        }
        std::string path(m_rest.substr(0, end));
        m_rest.remove_prefix(end + 1U);
        return path;
    }

private:
    [[noreturn]] void Refuse(const std::string& what) const
    {
        const std::size_t position = m_text.size() - m_rest.size() + 1U;
        throw Failure(FailureNumber::BadParameters,
                      "Work parameters, character " + std::to_string(position) + ": " + what);
    }

    std::string_view m_text;
    std::string_view m_rest;
};

} // namespace

std::vector<Treatment> ReadParameterText(std::wstring_view text)
{
    std::string narrow;
    if (!support::TryNarrowFromWide(text, narrow))
    {
        throw Failure(FailureNumber::BadParameters,
                      "Work parameters: a path has characters outside Windows-1252: " + narrow);
    }
    std::vector<Treatment> treatments;
    ParameterReader reader(narrow);
    while (!reader.AtEnd())
    {
        if (!treatments.empty())
        {
            reader.Expect(kSeparator);
        }
        Treatment treatment;
        treatment.orderFile = reader.QuotedPath();
        reader.Expect(" ");
        treatment.stem = reader.QuotedPath();
        reader.Expect(" ;");
        treatments.push_back(std::move(treatment));
    }
    return treatments;
}

} // namespace engine
