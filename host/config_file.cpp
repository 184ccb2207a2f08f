#include "host/config_file.h"

#include "database/secrets.h"
#include "host/order_path.h"
#include "host/refusal.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "port/files.h"
#include "port/secrecy.h"

#include <toml++/toml.h>

#include <algorithm>

namespace host
{

namespace
{

constexpr std::int64_t kLargestFile = std::int64_t{1024} * 1024;

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
    std::string kind;
    switch (found.type())
    {
    case toml::node_type::string:
        kind = "text";
        break;
    case toml::node_type::integer:
        kind = "a whole number";
        break;
    case toml::node_type::floating_point:
        kind = "a number with decimals";
        break;
    case toml::node_type::boolean:
        kind = "true or false";
        break;
    case toml::node_type::array:
        kind = "a list";
        break;
    case toml::node_type::table:
        kind = "a table";
        break;
    default:
        kind = "a date or time";
        break;
    }
    throw UsageRefusal(place.Text() + ": expected " + expected + ", found " + kind + ". Write " +
                       example + ".");
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

void AddTable(const toml::table& table, const CommandSpec& owner, const std::string& file,
              OptionValues* values)
{
    for (const auto& [key, node] : table)
    {
        const std::string name(key.str());
        const Place place{file, key.source(), std::string(owner.name) + "." + Printable(name)};
        const OptionSpec* spec = name == kConfigOption ? nullptr : FindOption(owner, name);
        if (spec == nullptr)
        {
            RefuseKey(place, name, OptionNames(owner));
        }
        const std::string text = TextOf(node, *spec, place);
        if (values != nullptr)
        {
            values->AddUnlessThere(name, {text, place.Text()});
        }
    }
}

// A command's own table goes before the keys at the top, wherever it stands in the file.
void AddCommandTables(const toml::table& root, const std::string& file, const CommandSpec& command,
                      OptionValues& values)
{
    for (const auto& [key, node] : root)
    {
        const toml::table* table = node.as_table();
        if (table == nullptr)
        {
            continue;
        }
        const std::string name(key.str());
        const CommandSpec* owner = FindCommand(name);
        if (owner == nullptr)
        {
            const Place place{file, node.source(), ""};
            throw UsageRefusal(place.Text() + ": unknown table [" + Printable(name) + "]." +
                               DidYouMean(name, CommandNames(), "") +
                               " Tables are named like the commands of signcheck.");
        }
        AddTable(*table, *owner, file, owner == &command ? &values : nullptr);
    }
}

void AddTopKeys(const toml::table& root, const std::string& file, const CommandSpec& command,
                OptionValues& values)
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
        const std::string text = TextOf(node, *spec, place);
        if (FindOption(command, name) != nullptr)
        {
            values.AddUnlessThere(name, {text, place.Text()});
        }
    }
}

std::string ReadConfigFile(const OptionValue& path)
{
    const std::string narrow = ExistingFilePath(path, "the settings file");
    port::File file;
    if (!file.Open(narrow.c_str(), port::OpenMode::Read))
    {
        throw UsageRefusal(path.origin + ": the settings file " + Quoted(path.text) +
                           " cannot be read. Give its owner the right to read it.");
    }
    const std::int64_t size = file.Size();
    if (size < 0 || size > kLargestFile)
    {
        throw UsageRefusal(path.origin + ": the settings file " + Quoted(path.text) +
                           " is larger than 1 MiB. Give a settings file in TOML.");
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size())
    {
        const std::int64_t count = file.Read(bytes.data() + filled, bytes.size() - filled);
        if (count <= 0)
        {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

toml::table ParseConfig(const std::string& toml, const std::string& name)
{
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

bool HoldsPassword(const toml::table& table)
{
    const auto* db = table["db"].as_string();
    return db != nullptr && !database::SecretSettingsIn(db->get()).empty();
}

// At the top and in every command's table, whichever command is run: the file is what others read.
bool HoldsPasswordAnywhere(const toml::table& root)
{
    return HoldsPassword(root) || std::any_of(root.begin(), root.end(),
                                              [](const auto& entry)
                                              {
                                                  const toml::table* table =
                                                      entry.second.as_table();
                                                  return table != nullptr && HoldsPassword(*table);
                                              });
}

void RequireOwnersOnly(const OptionValue& path)
{
    const port::FileRights rights =
        port::RightsOf(ExistingFilePath(path, "the settings file").c_str());
    if (!rights.othersMayRead && !rights.othersMayWrite)
    {
        return;
    }
    throw UsageRefusal(path.origin + ": the settings file " + Quoted(path.text) +
                       " holds the password of its field db and has mode " + rights.mode +
                       ", so that others may " + (rights.othersMayRead ? "read" : "write") +
                       " it. Make it its owner's alone: chmod 600 " + Printable(path.text) +
                       ", and change the password if others have seen it.");
}

void AddFields(const toml::table& root, const std::string& name, const CommandSpec& command,
               OptionValues& values)
{
    AddCommandTables(root, name, command, values);
    AddTopKeys(root, name, command, values);
}

} // namespace

void AddFromConfigText(const std::string& toml, const std::string& name, const CommandSpec& command,
                       OptionValues& values)
{
    AddFields(ParseConfig(toml, name), name, command, values);
}

void AddFromConfigFile(const OptionValue& path, const CommandSpec& command, OptionValues& values)
{
    const std::string name = Printable(path.text);
    const toml::table root = ParseConfig(ReadConfigFile(path), name);
    if (HoldsPasswordAnywhere(root))
    {
        RequireOwnersOnly(path);
    }
    AddFields(root, name, command, values);
}

} // namespace host
