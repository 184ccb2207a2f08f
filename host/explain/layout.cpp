#include "host/explain/words.h"
#include "host/html_page.h"
#include "host/paragraph.h"

namespace explain
{

namespace
{

constexpr const char* kStyle = "dt{font-weight:600}dd{margin:0 0 .6rem 1.2rem}";
constexpr const char* kTitle = "The decision rule by rule";
constexpr const char* kFrenchTitle = "La décision règle par règle";

} // namespace

std::string AsText(const std::vector<Section>& sections)
{
    std::string text;
    bool wasTitled = false;
    for (const Section& section : sections)
    {
        const bool isTitled = !section.title.empty();
        text += (isTitled || wasTitled) && !text.empty() ? "\n" : "";
        text += isTitled ? section.title + "\n" : std::string();
        for (const Told& told : section.lines)
        {
            host::AppendParagraph(text, (isTitled ? "  " : "") + told.label, told.words);
        }
        wasTitled = isTitled;
    }
    return text;
}

std::string AsHtml(const std::vector<Section>& sections, support::Language language)
{
    const bool isFrench = language == support::Language::French;
    std::string body;
    for (const Section& section : sections)
    {
        body += section.title.empty() ? std::string()
                                      : "<h2>" + host::HtmlText(section.title) + "</h2>\n";
        body += "<dl>\n";
        for (const Told& told : section.lines)
        {
            body += told.label.empty() ? std::string()
                                       : "<dt>" + host::HtmlText(told.label) + "</dt>\n";
            body += "<dd>" + host::HtmlText(told.words) + "</dd>\n";
        }
        body += "</dl>\n";
    }
    return host::HtmlPage(isFrench ? kFrenchTitle : kTitle, kStyle, body, isFrench ? "fr" : "en");
}

} // namespace explain
