#include "host/config_file.h"

#include "database/secrets.h"
#include "host/file_text.h"
#include "host/order_path.h"
#include "host/refusal.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "host/toml_keys.h"
#include "host/toml_kind.h"
#include "port/secrecy.h"

#include <toml++/toml.h>

#include <algorithm>

namespace host
{

namespace
{

constexpr std::int64_t kLargestFileMiB = 1;

/// Where in the file a message points to.
struct Place
{
    std::string file;
    toml::source_region region;
    std::string field;

    std::string Text() const
    {
        std::string text = file + ", line " + std::to_string(region.begin.line);
        return field.empty() ? text : text + ", field " + field;
    }
};

[[noreturn]] void RefuseType(const Place& place, const std::string& expected,
                             const toml::node& found, const std::string& example)
{
    throw UsageRefusal(place.Text() + ": expected " + expected + ", found " + KindOf(found) +
                       ". Write " + example + ".");
}

std::string TextOf(const toml::node& node, const OptionSpec& spec, const Place& place)
{
    const std::string name = spec.name;
    switch (spec.kind)
    {
    case OptionKind::Flag:
        if (const auto* flag = node.as_boolean(); flag != nullptr)
        {
            return flag->get() ? kFlagOn : kFlagOff;
        }
        RefuseType(place, "true or false", node, name + " = true");
    case OptionKind::Number:
        if (const auto* number = node.as_integer(); number != nullptr)
        {
            return std::to_string(number->get());
        }
        RefuseType(place, "a whole number", node, name + " = 9");
    case OptionKind::Amount:
        // A TOML float is binary: 0.10 would not stay 0.10.
        if (const auto* number = node.as_integer(); number != nullptr)
        {
            return std::to_string(number->get());
        }
        if (const auto* text = node.as_string(); text != nullptr)
        {
            return text->get();
        }
        RefuseType(place, "an amount in quotes", node, name + " = \"1500.00\"");
    case OptionKind::Text:
        break;
    }
    if (const auto* text = node.as_string(); text != nullptr)
    {
        return text->get();
    }
    RefuseType(place, "text in quotes", node, name + " = \"…\"");
}

std::vector<std::string> AllOptionNames()
{
    std::vector<std::string> names;
    for (const CommandSpec& command : Commands())
    {
        for (const std::string& name : OptionNames(command))
        {
            names.push_back(name);
        }
    }
    return names;
}

const OptionSpec* FindInAnyCommand(const std::string& name)
{
    for (const CommandSpec& command : Commands())
    {
        if (const OptionSpec* option = FindOption(command, name); option != nullptr)
        {
            return option;
        }
    }
    return nullptr;
}

[[noreturn]] void RefuseKey(const Place& place, const std::string& key,
                            const std::vector<std::string>& known)
{
    throw UsageRefusal(place.Text() + ": unknown field." + DidYouMean(key, known, "") +
                       " Fields are named like the options of signcheck, without dashes.");
}

[[noreturn]] void RefuseTable(const Place& place, const std::string& name)
{
    throw UsageRefusal(place.Text() + ": unknown table [" + Printable(name) + "]." +
                       DidYouMean(name, CommandNames(), "") +
                       " Tables are named like the commands of signcheck, with a point for the "
                       "blank.");
}

void AddTable(const toml::table& table, const CommandSpec& owner, const std::string& file,
              OptionValues& values)
{
    for (const auto& [key, node] : table)
    {
        const std::string name(key.str());
        const Place place{file, key.source(), TableName(owner) + "." + Printable(name)};
        const OptionSpec* spec = name == kConfigOption ? nullptr : FindOption(owner, name);
        if (spec == nullptr)
        {
            RefuseKey(place, name, OptionNames(owner));
        }
        values.AddUnlessThere(name, {TextOf(node, *spec, place), place.Text()});
    }
}

// Tables of grouped commands stand in the table of their group, whose word is then in `group`.
void AddCommandTables(const toml::table& tables, const std::string& group, const std::string& file,
                      ConfigFile& config)
{
    for (const auto& [key, node] : tables)
    {
        const std::string word(key.str());
        const std::string name = group.empty() ? word : group + " " + word;
        const toml::table* table = node.as_table();
        if (table == nullptr)
        {
            if (!group.empty())
            {
                RefuseKey({file, key.source(), group + "." + Printable(word)}, name,
                          CommandNames());
            }
            continue;
        }
        if (const CommandSpec* owner = FindCommand(name); owner != nullptr)
        {
            AddTable(*table, *owner, file, config.tables[name]);
        }
        else if (group.empty() && FindGroup(word) != nullptr)
        {
            AddCommandTables(*table, word, file, config);
        }
        else
        {
            RefuseTable({file, node.source(), ""}, name);
        }
    }
}

void AddTopKeys(const toml::table& root, const std::string& file, OptionValues& values)
{
    for (const auto& [key, node] : root)
    {
        if (node.is_table())
        {
            continue;
        }
        const std::string name(key.str());
        const Place place{file, key.source(), Printable(name)};
        const OptionSpec* spec = name == kConfigOption ? nullptr : FindInAnyCommand(name);
        if (spec == nullptr)
        {
            RefuseKey(place, name, AllOptionNames());
        }
        values.AddUnlessThere(name, {TextOf(node, *spec, place), place.Text()});
    }
}

toml::table ParseConfig(const std::string& toml, const std::string& name)
{
    if (const std::size_t line = LineOfKeyWithTooManyParts(toml); line != 0)
    {
        throw UsageRefusal(name + ", line " + std::to_string(line) + ": a key has more than " +
                           std::to_string(kMostKeyParts) +
                           " parts. Correct the line: a field is written name = value.");
    }
    try
    {
        return toml::parse(std::string_view(toml));
    }
    catch (const toml::parse_error& error)
    {
        const Place place{name, error.source(), ""};
        throw UsageRefusal(place.Text() + ": " + Printable(error.description()) +
                           ". Correct the line: a field is written name = value, a text stands in "
                           "quotes.");
    }
}

/// What others must not do with a file, for what it holds.
enum class Guarded
{
    Nothing,
    Connection, ///< others must not choose the database
    Password,   ///< nor read it
};

Guarded GuardedByField(const toml::table& table)
{
    const auto* db = table["db"].as_string();
    if (db == nullptr)
    {
        return Guarded::Nothing;
    }
    return database::SecretSettingsIn(db->get()).empty() ? Guarded::Connection : Guarded::Password;
}

// At the top and in every command's table, whichever command is run: the file is what others read.
Guarded GuardedAnywhere(const toml::table& root)
{
    Guarded most = GuardedByField(root);
    for (const auto& [key, node] : root)
    {
        if (const toml::table* table = node.as_table(); table != nullptr)
        {
            most = std::max(most, GuardedAnywhere(*table));
        }
    }
    return most;
}

void RefuseRightsOfOthers(const OptionValue& path, Guarded guarded)
{
    const port::FileRights rights =
        port::RightsOf(ExistingFilePath(path, "the settings file").c_str());
    const bool isPassword = guarded == Guarded::Password;
    if (!rights.othersMayWrite && !(isPassword && rights.othersMayRead))
    {
        return;
    }
    const std::string held = isPassword ? "the password of its field db" : "a connection string";
    const std::string may = isPassword && rights.othersMayRead ? "read" : "write";
    const std::string remedy =
        isPassword ? "Make it its owner's alone: chmod 600 " + Printable(path.text) +
                         ", and change the password if others have seen it."
                   : "Take that right from them: chmod go-w " + Printable(path.text) + ".";
    throw UsageRefusal(path.origin + ": the settings file " + Quoted(path.text) + " holds " + held +
                       " and has mode " + rights.mode + ", so that others may " + may + " it. " +
                       remedy);
}

ConfigFile FieldsOf(const toml::table& root, const std::string& name)
{
    ConfigFile config;
    AddCommandTables(root, "", name, config);
    AddTopKeys(root, name, config.top);
    return config;
}

} // namespace

std::vector<OptionValue> ConfigFile::AllOf(const CommandSpec& command,
                                           const std::string& option) const
{
    std::vector<OptionValue> all;
    const auto table = tables.find(command.name);
    if (const OptionValue* const own = table == tables.end() ? nullptr : table->second.Find(option);
        own != nullptr)
    {
        all.push_back(*own);
    }
    if (const OptionValue* const shared = top.Find(option); shared != nullptr)
    {
        all.push_back(*shared);
    }
    return all;
}

ConfigFile ReadConfigText(const std::string& toml, const std::string& name)
{
    return FieldsOf(ParseConfig(toml, name), name);
}

ConfigFile ReadConfigFile(const OptionValue& path)
{
    const std::string name = Printable(path.text);
    const toml::table root =
        ParseConfig(ReadTextFile(path, "the settings file", kLargestFileMiB), name);
    if (const Guarded guarded = GuardedAnywhere(root); guarded != Guarded::Nothing)
    {
        RefuseRightsOfOthers(path, guarded);
    }
    return FieldsOf(root, name);
}

} // namespace host
