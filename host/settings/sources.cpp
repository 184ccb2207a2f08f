#include "host/settings/sources.h"

#include "host/settings/variables.h"
#include "port/environment.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace host
{

namespace
{

constexpr const char* kUserFolder = "signcheck";
constexpr const char* kUserFile = "config.toml";
// Beside the other configuration of the machine, which only its administrators may write.
constexpr const char* kMachineFile = "signcheck.toml";

/// The first settles what the second would.
struct Rivals
{
    const char* given;
    const char* leftOut;
};

constexpr Rivals kRivals[] = {{"json", "output-format"}, {"output-format", "json"},
                              {"format", "total"},       {"format", "largest"},
                              {"format", "currency"},    {"total", "format"},
                              {"largest", "format"}};

bool IsSettledBy(const OptionValues& stronger, const std::string& option)
{
    return std::any_of(std::begin(kRivals), std::end(kRivals),
                       [&](const Rivals& rivals) {
                           return option == rivals.leftOut &&
                                  stronger.Find(rivals.given) != nullptr;
                       });
}

using Source = std::function<std::optional<OptionValue>(const OptionSpec&)>;

void CompleteFrom(const Source& source, const CommandSpec& command, OptionValues& values)
{
    const OptionValues stronger = values;
    for (const OptionSpec& option : command.options)
    {
        if (IsSettledBy(stronger, option.name))
        {
            continue;
        }
        if (std::optional<OptionValue> value = source(option); value)
        {
            values.AddUnlessThere(option.name, std::move(*value));
        }
    }
}

void AddIfThere(const char* role, const std::string& folder, const std::string& name,
                std::vector<SettingsFile>& files)
{
    if (folder.empty())
    {
        return;
    }
    const std::string path = port::JoinPath(folder, name);
    SettingsFile file;
    file.role = role;
    file.path = {support::Utf8FromNarrow(path), std::string("the ") + role + "'s settings"};
    file.isThere = port::FileExists(path.c_str()) || port::FolderExists(path.c_str());
    if (file.isThere)
    {
        file.content = ReadConfigFile(file.path);
    }
    files.push_back(std::move(file));
}

std::vector<OptionValue> OfEnvironment(const OptionSpec& option)
{
    const std::optional<OptionValue> value = FromEnvironment(option);
    return value ? std::vector<OptionValue>{*value} : std::vector<OptionValue>();
}

std::string WithoutFinalSeparator(std::string folder)
{
    if (folder.size() > 1 && port::IsPathSeparator(folder.back()))
    {
        folder.pop_back();
    }
    return folder;
}

} // namespace

SettingsSources::SettingsSources(const OptionValue* named)
{
    const OptionSpec config = {kConfigOption, OptionKind::Text, "FILE", ""};
    std::optional<OptionValue> path =
        named == nullptr ? FromEnvironment(config) : std::optional<OptionValue>(*named);
    if (path)
    {
        m_files.push_back({kNamedRole, *path, true, ReadConfigFile(*path)});
    }
    else if (const std::string folder = port::UserConfigurationFolder(); !folder.empty())
    {
        AddIfThere("user", port::JoinPath(folder, kUserFolder), kUserFile, m_files);
    }
    AddIfThere("machine", WithoutFinalSeparator(DoLoadPath()), kMachineFile, m_files);
}

void SettingsSources::Complete(const CommandSpec& command, OptionValues& values) const
{
    CompleteFrom(FromEnvironment, command, values);
    for (const SettingsFile& file : m_files)
    {
        const auto strongest = [&](const OptionSpec& option)
        {
            const auto all = file.content.AllOf(command, option.name);
            return all.empty() ? std::nullopt : std::optional<OptionValue>(all.front());
        };
        CompleteFrom(strongest, command, values);
    }
}

std::vector<OptionValue> SettingsSources::AllOf(const CommandSpec& command,
                                                const OptionSpec& option) const
{
    std::vector<OptionValue> all = OfEnvironment(option);
    for (const SettingsFile& file : m_files)
    {
        const auto said = file.content.AllOf(command, option.name);
        all.insert(all.end(), said.begin(), said.end());
    }
    return all;
}

std::vector<OptionValue> SettingsSources::AllOf(const OptionSpec& option) const
{
    std::vector<OptionValue> all = OfEnvironment(option);
    for (const SettingsFile& file : m_files)
    {
        if (const OptionValue* const said = file.content.top.Find(option.name); said != nullptr)
        {
            all.push_back(*said);
        }
    }
    return all;
}

} // namespace host
