#include "host/command_table.h"

#include "host/commands/families.h"
#include "host/palette.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr OptionSpec kColor = {
    kColorOption,
    OptionKind::Text,
    "WHEN",
    "colour the verdicts of checks, errors and warnings: auto, as when not given, on a "
    "terminal unless NO_COLOR is set; always; never",
    false,
    "auto|always|never"};

std::vector<CommandFamily> MakeFamilies()
{
    return {CheckingCommands(), OrderFileCommands(),   AuthorityCommands(),
            RuleFileCommands(), LookingBackCommands(), UpkeepCommands()};
}

std::vector<CommandSpec> MakeCommands()
{
    std::vector<CommandSpec> commands;
    for (const CommandFamily& family : Families())
    {
        for (CommandSpec command : family.commands)
        {
            command.family = family.title;
            command.options.push_back(kColor);
            commands.push_back(std::move(command));
        }
    }
    return commands;
}

} // namespace

const std::vector<CommandFamily>& Families()
{
    static const std::vector<CommandFamily> families = MakeFamilies();
    return families;
}

const std::vector<CommandSpec>& Commands()
{
    static const std::vector<CommandSpec> commands = MakeCommands();
    return commands;
}

const CommandSpec* FindCommand(const std::string& name)
{
    const auto& commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const auto& command) { return name == command.name; });
    return found == commands.end() ? nullptr : &*found;
}

const CommandGroup* FindGroup(const std::string& word)
{
    for (const CommandFamily& family : Families())
    {
        for (const CommandGroup& group : family.groups)
        {
            if (word == group.word)
            {
                return &group;
            }
        }
    }
    return nullptr;
}

const OptionSpec* FindOption(const CommandSpec& command, const std::string& name)
{
    const auto found = std::find_if(command.options.begin(), command.options.end(),
                                    [&name](const auto& option) { return name == option.name; });
    return found == command.options.end() ? nullptr : &*found;
}

std::string TableName(const CommandSpec& command)
{
    std::string name = command.name;
    std::replace(name.begin(), name.end(), ' ', '.');
    return name;
}

std::vector<std::string> CommandNames()
{
    std::vector<std::string> names;
    for (const CommandSpec& command : Commands())
    {
        names.emplace_back(command.name);
    }
    return names;
}

std::vector<std::string> OptionNames(const CommandSpec& command)
{
    std::vector<std::string> names;
    for (const OptionSpec& option : command.options)
    {
        names.emplace_back(option.name);
    }
    return names;
}

} // namespace host
