#include "host/manual/roff.h"

#include "host/text.h"
#include "signutils/version.h"

#include <cstdio>

namespace manual
{

namespace
{

// ASCII that roff would take for more than itself, and letters beyond ASCII, which not every reader
// of pages takes as UTF-8.
std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char32_t letter : host::CodePoints(text))
    {
        switch (letter)
        {
        case U'\\':
            escaped += "\\(rs";
            break;
        case U'-':
            escaped += "\\-";
            break;
        case U'"':
            escaped += "\\(dq";
            break;
        case U'\'':
            escaped += "\\(aq";
            break;
        case U'`':
            escaped += "\\(ga";
            break;
        case U'^':
            escaped += "\\(ha";
            break;
        case U'~':
            escaped += "\\(ti";
            break;
        default:
            if (letter < 0x80)
            {
                escaped += static_cast<char>(letter);
                break;
            }
            char code[16];
            std::snprintf(code, sizeof code, "\\[u%04X]", static_cast<unsigned>(letter));
            escaped += code;
        }
    }
    return escaped;
}

} // namespace

RoffPage::RoffPage(const std::string& name, const std::string& summary)
{
    std::string title = name;
    for (char& letter : title)
    {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - ('a' - 'A')) : letter;
    }
    // Without a date, so that the same sources give the same page.
    m_text = ".TH " + Escaped(title) +
             " 1 \"\" \"signcheck " SIGNUTILS_VERSION "\" \"SignUtils\"\n"
             ".nh\n.ad l\n";
    Section("Name");
    Line(Escaped(name) + " \\- " + Escaped(summary));
}

void RoffPage::Section(std::string_view title)
{
    std::string large(title);
    for (char& letter : large)
    {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - ('a' - 'A')) : letter;
    }
    Line(".SH \"" + Escaped(large) + "\"");
}

void RoffPage::Subsection(std::string_view title)
{
    Line(".SS \"" + Escaped(title) + "\"");
}

void RoffPage::Paragraph(std::string_view text)
{
    Line(".PP\n\\&" + Escaped(text));
}

void RoffPage::Item(std::string_view term, std::string_view text)
{
    Line(".TP\n\\fB" + Escaped(term) + "\\fR\n\\&" + Escaped(text));
}

void RoffPage::Literal(std::string_view line)
{
    Line(".PP\n.RS 4\n\\&" + Escaped(line) + "\n.RE");
}

void RoffPage::Line(std::string_view text)
{
    m_text += text;
    m_text += '\n';
}

} // namespace manual
