#include "host/output_format.h"

#include "host/command_table.h"
#include "host/refusal.h"
#include "host/text.h"

#include <algorithm>
#include <iterator>

namespace host
{

namespace
{

struct FormatName
{
    const char* name;
    OutputFormat format;
};

constexpr FormatName kFormats[] = {
    {"table", OutputFormat::Table},
    {"json", OutputFormat::Json},
    {"ndjson", OutputFormat::NdJson},
    {"csv", OutputFormat::Csv},
};

const FormatName* FindFormat(const std::string& name)
{
    const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [&name](const auto& each) { return name == each.name; });
    return found == std::end(kFormats) ? nullptr : found;
}

// The names that the command's option lists, as a sentence has them.
std::string Listed(std::string choices)
{
    for (std::size_t at = choices.find('|'); at != std::string::npos; at = choices.find('|', at))
    {
        choices.replace(at, 1, ", ");
    }
    return choices;
}

bool Offers(const std::string& choices, const std::string& name)
{
    return ("|" + choices + "|").find("|" + name + "|") != std::string::npos;
}

} // namespace

OutputFormat OutputFormatFrom(const CommandSpec& command, const OptionValues& values)
{
    const OptionSpec* const spec = FindOption(command, kOutputFormatOption);
    const OptionValue* const value = values.Find(kOutputFormatOption);
    if (spec == nullptr || value == nullptr)
    {
        return OutputFormatFrom(values);
    }
    const std::string choices = spec->choices;
    if (!Offers(choices, value->text))
    {
        const bool isOfOthers = FindFormat(value->text) != nullptr;
        // A habit of who lists rows; `config` must be able to show it.
        if (isOfOthers && !value->origin.starts_with("option "))
        {
            return OutputFormat::Table;
        }
        throw UsageRefusal(value->origin + ": " + Quoted(value->text) +
                           (isOfOthers ? " is for commands that list rows, which signcheck " +
                                             std::string(command.name) + " does not. Give one of: "
                                       : " is no output format. Give one of: ") +
                           Listed(choices) + ".");
    }
    const OptionValue* const json = values.Find("json");
    const bool contradicts = json != nullptr && json->text == kFlagOn &&
                             FindFormat(value->text) != nullptr &&
                             FindFormat(value->text)->format != OutputFormat::Json;
    // A flag in a settings file is a habit, the command line a wish: that one stays.
    if (contradicts && json->origin.starts_with("option ") && value->origin.starts_with("option "))
    {
        throw UsageRefusal(value->origin + ": " + Quoted(value->text) +
                           " contradicts --json, which is short for " + value->origin.substr(7) +
                           " json. Give one of them.");
    }
    return OutputFormatFrom(values);
}

OutputFormat OutputFormatFrom(const OptionValues& values)
{
    const OptionValue* const value = values.Find(kOutputFormatOption);
    const OptionValue* const json = values.Find("json");
    const bool isShortForm = json != nullptr && json->text == kFlagOn;
    if (isShortForm && (value == nullptr || json->origin.starts_with("option ")))
    {
        return OutputFormat::Json;
    }
    const FormatName* const named = value == nullptr ? nullptr : FindFormat(value->text);
    return named == nullptr ? OutputFormat::Table : named->format;
}

bool IsJson(OutputFormat format)
{
    return format == OutputFormat::Json || format == OutputFormat::NdJson;
}

} // namespace host
