#pragma once

#include "host/option_values.h"

#include <string>
#include <vector>

namespace host
{

enum class OptionKind
{
    Text,
    Number, ///< whole number
    Amount, ///< decimal text, judged once the currency is known
    Flag,
};

/// One option of a command. The same name means the same thing in every command.
struct OptionSpec
{
    const char* name; ///< without dashes; also the key of the settings file
    OptionKind kind;
    const char* placeholder; ///< what stands for the value in the help
    const char* help;
    bool positional = false;       ///< given without its name on the command line
    const char* choices = nullptr; ///< "a|b|c" where only these are taken
    const char* alias = nullptr;   ///< another name on the command line, without dashes
};

/// A command line that works on the sample bank, with what it is good for.
struct Example
{
    const char* purpose;
    const char* line;
};

/// One way for a command to end, as host/exit_status.h has it.
struct Ending
{
    int status;
    const char* meaning; ///< a phrase without a point
};

struct CommandSpec
{
    const char* name; ///< one word, or the word of a group and one of its own: "rules export"
    const char* summary;
    std::vector<OptionSpec> options;
    int (*run)(const OptionValues& values);
    std::vector<Example> examples; ///< at least one
    /// Those that are not simply done, could not be run or wrong usage; exit_status_table.h adds
    /// these.
    std::vector<Ending> endings = {};
    const char* family = ""; ///< title of the family; the table of all commands sets it
};

/// The first word of commands of two words.
struct CommandGroup
{
    const char* word;
    const char* summary;
};

/// Commands that the help lists together.
struct CommandFamily
{
    const char* title;
    std::vector<CommandSpec> commands;
    std::vector<CommandGroup> groups = {};
};

/// Every family of signcheck, in the order of the help.
const std::vector<CommandFamily>& Families();

/// Every command of signcheck, family by family.
const std::vector<CommandSpec>& Commands();

/// Null when no command has that name.
const CommandSpec* FindCommand(const std::string& name);

/// Null when the command has no such option.
const OptionSpec* FindOption(const CommandSpec& command, const std::string& name);

/// What the commands of a group have in common; null when none begins with the word.
const CommandGroup* FindGroup(const std::string& word);

/// Of the command's own table in a settings file: "rules.export" for "rules export".
std::string TableName(const CommandSpec& command);

/// Names for suggestions.
std::vector<std::string> CommandNames();
std::vector<std::string> OptionNames(const CommandSpec& command);

/// The option that names the settings file; the one that no settings file may hold.
inline constexpr const char* kConfigOption = "config";

} // namespace host
