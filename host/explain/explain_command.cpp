#include "host/explain/explain_command.h"

#include "host/explain/origin.h"
#include "host/explain/words.h"
#include "host/file_text.h"
#include "host/html_page.h"
#include "host/option_readers.h"
#include "host/order_path.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

namespace host
{

int RunExplain(const OptionValues& values)
{
    RequirePlaceForHtmlPage(values);
    const OptionValue& file = Required(values, "file", "signcheck explain TRACE");
    const auto text = FileText(ExistingFilePath(file, "the trace"));
    if (!text)
    {
        throw UsageRefusal(
            "argument TRACE: " + Quoted(file.text) +
            " cannot be read. Give a file that signcheck check --trace has written.");
    }
    const auto checks = explain::ReadTrace(*text);
    if (checks.empty())
    {
        throw Refusal(kFindings,
                      "argument TRACE: " + Quoted(file.text) +
                          " holds no check. Give a file that signcheck check --trace, or "
                          "a host with a trace, has written.");
    }
    nlohmann::ordered_json object = {{"checks", nlohmann::ordered_json::array()}};
    const support::Language language = support::MessageLanguage();
    std::vector<explain::Section> sections;
    std::string words;
    std::size_t number = 0;
    for (const explain::TracedCheck& check : checks)
    {
        std::vector<explain::Section> told = {
            explain::OriginOf(check, ++number, checks.size(), language)};
        const auto judged = explain::Sections(check, language);
        told.insert(told.end(), judged.begin(), judged.end());
        sections.insert(sections.end(), told.begin(), told.end());
        nlohmann::ordered_json json = explain::OriginAsJson(check);
        json.update(explain::AsJson(check));
        object["checks"].push_back(std::move(json));
        words += (words.empty() ? "" : "\n\n") + explain::AsText(told);
    }
    WriteHtmlPageAskedFor(values, explain::AsHtml(sections, language));
    if (values.IsOn("json"))
    {
        PrintJson(object);
    }
    else
    {
        Print(words);
    }
    return kDone;
}

} // namespace host
