// Settings as a table and as JSON.

#include "host/output.h"
#include "host/paragraph.h"
#include "host/settings/setting_report.h"
#include "host/settings/unknown_variables.h"
#include "host/table.h"
#include "host/text.h"
#include "port/program.h"

#include <nlohmann/json.hpp>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidestName = 18;
constexpr std::size_t kWidestValue = 28;
constexpr std::size_t kWidestOrigin = 30;

/// What is read from the environment alone, or by the library itself.
constexpr const char* kOtherVariables[] = {
    "SIGNCHECK_PROGRESS", "SIGNUTILS_SPOOL", "SIGNUTILS_HANDOFF",    "SIGNUTILS_CONFIG",
    "SIGNUTILS_LANG",     "SIGNUTILS_POOL",  "SIGNUTILS_DB_TIMEOUT", "SIGNUTILS_COM_REGISTRY"};

std::string State(const SettingsFile& file)
{
    return file.isThere ? "read" : "not there";
}

void AppendFiles(std::string& text, const SettingsSources& sources)
{
    for (const SettingsFile& file : sources.Files())
    {
        AppendParagraph(text, file.role, Printable(file.path.text) + ": " + State(file));
    }
}

// The file by its role, since its path stands above.
std::string ShownOrigin(const OptionValue& value, const SettingsSources& sources)
{
    for (const SettingsFile& file : sources.Files())
    {
        const std::string path = Printable(file.path.text);
        if (value.origin.starts_with(path + ","))
        {
            const std::string ending = file.role == kNamedRole ? " file" : "'s file";
            return file.role + ending + value.origin.substr(path.size());
        }
    }
    return value.origin;
}

void AppendSet(std::string& text, const std::vector<SettingReport>& settings,
               const SettingsSources& sources)
{
    Table table;
    table.AddColumn("SETTING", Table::Align::Left, kWidestName);
    table.AddColumn("VALUE", Table::Align::Left, kWidestValue);
    table.AddColumn("FROM", Table::Align::Left, kWidestOrigin);
    for (const SettingReport& setting : settings)
    {
        std::string name = setting.name;
        for (const OptionValue& value : setting.said)
        {
            table.AddRow({name, ShownSetting(setting.name, value), ShownOrigin(value, sources)});
            name = "  hides";
        }
    }
    text += table.IsEmpty() ? "" : "\n" + table.Text();
}

void AppendUnset(std::string& text, const std::vector<SettingReport>& settings)
{
    std::string names;
    for (const SettingReport& setting : settings)
    {
        if (setting.said.empty())
        {
            names += (names.empty() ? "" : ", ") + setting.name;
        }
    }
    if (!names.empty())
    {
        text += "\n";
        AppendParagraph(text, "Not set", names);
    }
}

void AppendOtherVariables(std::string& text)
{
    std::string said;
    for (const char* const variable : kOtherVariables)
    {
        if (const std::string value = port::Utf8Environment(variable); !value.empty())
        {
            said += (said.empty() ? "" : "; ") + std::string(variable) + " is " + Quoted(value);
        }
    }
    if (!said.empty())
    {
        text += "\n";
        AppendParagraph(text, "Variables", WithoutPasswords(said) + ".");
    }
}

void AppendUnknownVariables(std::string& text)
{
    std::string told;
    for (const UnknownVariable& variable : UnknownVariables())
    {
        told += (told.empty() ? "" : " ") + InWords(variable);
    }
    if (!told.empty())
    {
        text += "\n";
        AppendParagraph(text, "Unknown", told);
    }
}

Json OrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

Json ValuesAsJson(const SettingReport& setting, std::size_t from)
{
    Json values = Json::array();
    for (std::size_t index = from; index < setting.said.size(); ++index)
    {
        const OptionValue& value = setting.said[index];
        values.push_back({{"value", ShownSetting(setting.name, value)}, {"from", value.origin}});
    }
    return values;
}

Json SettingAsJson(const SettingReport& setting)
{
    const bool isSet = !setting.said.empty();
    return {{"name", setting.name},
            {"value", isSet ? Json(ShownSetting(setting.name, setting.said.front())) : Json()},
            {"from", isSet ? Json(setting.said.front().origin) : Json()},
            {"variable", OrNull(setting.variable)},
            {"hides", ValuesAsJson(setting, 1)}};
}

} // namespace

std::string SettingsAsText(const std::vector<SettingReport>& settings,
                           const SettingsSources& sources)
{
    std::string text;
    AppendFiles(text, sources);
    AppendSet(text, settings, sources);
    AppendUnset(text, settings);
    AppendOtherVariables(text);
    AppendUnknownVariables(text);
    return text;
}

Json SettingsAsJson(const std::vector<SettingReport>& settings, const SettingsSources& sources)
{
    Json object = {{"files", Json::array()},
                   {"settings", Json::array()},
                   {"variables", Json::array()},
                   {"unknownVariables", Json::array()}};
    for (const SettingsFile& file : sources.Files())
    {
        object["files"].push_back(
            {{"role", file.role}, {"path", Printable(file.path.text)}, {"isThere", file.isThere}});
    }
    for (const SettingReport& setting : settings)
    {
        object["settings"].push_back(SettingAsJson(setting));
    }
    for (const char* const variable : kOtherVariables)
    {
        object["variables"].push_back(
            {{"variable", variable},
             {"value", OrNull(Printable(WithoutPasswords(port::Utf8Environment(variable))))}});
    }
    for (const UnknownVariable& variable : UnknownVariables())
    {
        object["unknownVariables"].push_back({{"variable", Printable(variable.name)},
                                              {"meant", OrNull(variable.meant)},
                                              {"told", InWords(variable)}});
    }
    return object;
}

} // namespace host
