#include "host/doctor/file_checks.h"

#include "database/connection_string.h"
#include "host/command_table.h"
#include "host/order_path.h"
#include "host/settings/sources.h"
#include "host/settings/unknown_variables.h"
#include "host/text.h"
#include "port/environment.h"
#include "port/files.h"
#include "port/secrecy.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr const char* kSettingsCheck = "settings";
constexpr const char* kDisplayFile = "CtlVEU.INI";

// A settings file that names the database and that others may write was refused before any command
// ran.
void JudgeSettingsFiles(const host::SettingsSources& sources, Findings& findings)
{
    for (const host::SettingsFile& file : sources.Files())
    {
        if (!file.isThere)
        {
            continue;
        }
        const port::FileRights rights =
            port::RightsOf(host::ExistingFilePath(file.path, "the settings file").c_str());
        if (rights.othersMayWrite)
        {
            findings.push_back(
                {kSettingsCheck, Outcome::Warning,
                 "the settings file " + host::Quoted(file.path.text) + " has mode " + rights.mode +
                     ": others may set limits and folders there",
                 "Make it its owner's: chmod go-w " + host::Printable(file.path.text) + "."});
        }
    }
}

void JudgePassword(const host::OptionValues& values, Findings& findings)
{
    const host::OptionValue* const db = values.Find("db");
    if (db != nullptr && db->origin == "option --db" &&
        !database::ConnectionString(db->text).Secrets().empty())
    {
        findings.push_back({kSettingsCheck, Outcome::Warning,
                            "the connection string on the command line holds a password, which "
                            "every user of this machine can list",
                            "Give it as SIGNCHECK_DB, or as field db of a --config file of mode "
                            "600, and change the password."});
    }
}

void JudgeDisplay(Findings& findings)
{
    const std::string folder = DoLoadPath();
    if (!port::FileExists(port::JoinPath(folder, kDisplayFile).c_str()) &&
        !port::FileExists((folder + kDisplayFile).c_str()))
    {
        findings.push_back({kSettingsCheck, Outcome::Warning,
                            std::string(kDisplayFile) + " is not in the configuration folder " +
                                host::Quoted(support::Utf8FromNarrow(folder)) +
                                ": signcheck display cannot show orders",
                            "Put it there, or name its folder with SIGNUTILS_CONFIG."});
    }
}

void JudgeLanguage(Findings& findings)
{
    const std::string language = port::Environment("SIGNUTILS_LANG");
    const bool isKnown = language.empty() ||
                         support::EqualIgnoringAsciiCase(language.c_str(), "en") ||
                         support::EqualIgnoringAsciiCase(language.c_str(), "fr");
    if (!isKnown)
    {
        findings.push_back({kSettingsCheck, Outcome::Warning,
                            "SIGNUTILS_LANG: " + host::Quoted(support::Utf8FromNarrow(language)) +
                                " is an unknown language; messages are in English",
                            "Set en or fr."});
    }
}

void JudgeVariables(Findings& findings)
{
    for (const host::UnknownVariable& variable : host::UnknownVariables())
    {
        if (variable.IsMistake())
        {
            findings.push_back({kSettingsCheck, Outcome::Warning,
                                "variable " + host::Printable(variable.name) + " has no effect",
                                host::InWords(variable)});
        }
    }
}

void JudgeTimeout(Findings& findings)
{
    const std::string seconds = port::Environment("SIGNUTILS_DB_TIMEOUT");
    if (seconds.find_first_not_of("0123456789") != std::string::npos)
    {
        findings.push_back(
            {kSettingsCheck, Outcome::Warning,
             "SIGNUTILS_DB_TIMEOUT: " + host::Quoted(support::Utf8FromNarrow(seconds)) +
                 " is no number of seconds",
             "Give whole seconds, such as 30."});
    }
}

std::string InWords(const host::SettingsSources& sources)
{
    std::string files;
    for (const host::SettingsFile& file : sources.Files())
    {
        if (file.isThere)
        {
            files += (files.empty() ? "settings file " : " and ") + host::Quoted(file.path.text);
        }
    }
    const std::string language = port::Environment("SIGNUTILS_LANG");
    return (files.empty() ? std::string("no settings file") : files) + ", messages in " +
           (support::EqualIgnoringAsciiCase(language.c_str(), "fr") ? "French" : "English");
}

} // namespace

Findings CheckSettings(const host::OptionValues& values)
{
    const host::SettingsSources sources(values.Find(host::kConfigOption));
    Findings findings;
    JudgeSettingsFiles(sources, findings);
    JudgePassword(values, findings);
    JudgeDisplay(findings);
    JudgeLanguage(findings);
    JudgeTimeout(findings);
    JudgeVariables(findings);
    if (findings.empty())
    {
        findings.push_back({kSettingsCheck, Outcome::Ok, InWords(sources), ""});
    }
    return findings;
}

} // namespace doctor
