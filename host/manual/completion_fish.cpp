#include "host/command_table.h"
#include "host/manual/completed_value.h"
#include "host/manual/completion.h"
#include "host/manual/shell_words.h"

namespace manual
{

namespace
{

using host::CommandSpec;
using host::OptionKind;
using host::OptionSpec;

constexpr const char* kFishBegin = R"(# Completion of signcheck for fish, made from its commands.

# Whether the words before the cursor are these and nothing else, or begin with these.
function __signcheck_is
    set -l words (commandline -opc)
    set -e words[1]
    test "$words" = "$argv"
end

function __signcheck_in
    set -l words (commandline -opc)
    set -e words[1]
    set -l count (count $argv)
    test (count $words) -ge $count; and test "$words[1..$count]" = "$argv"
end

complete -c signcheck -f
)";

std::string Line(const std::string& condition, const std::string& rest)
{
    return "complete -c signcheck -n " + InFishQuotes(condition) + " " + rest + "\n";
}

std::string WordsAfter(const std::string& before, const std::vector<FirstWord>& words)
{
    std::string text;
    for (const FirstWord& word : words)
    {
        text += Line("__signcheck_is" + (before.empty() ? before : " " + before),
                     "-a " + InFishQuotes(word.word) + " -d " + InFishQuotes(word.summary));
        text += WordsAfter(before.empty() ? word.word : before + " " + word.word, word.further);
    }
    return text;
}

std::string Values(const OptionSpec& option)
{
    switch (CompletedValueOf(option))
    {
    case Completed::Choices:
        return " -a " + InFishQuotes(Joined(ChoicesOf(option)));
    case Completed::Commands:
    {
        std::vector<std::string> names;
        for (const FirstWord& word : FirstWords())
        {
            names.push_back(word.word);
        }
        return " -a " + InFishQuotes(Joined(names));
    }
    case Completed::Files:
        return " -F";
    case Completed::Folders:
        return " -a '(__fish_complete_directories)'";
    case Completed::Nothing:
        break;
    }
    return "";
}

// Files of themselves are offered to an option with a value that is not exclusive.
std::string ValuesOfOption(const OptionSpec& option)
{
    const bool isFile = CompletedValueOf(option) == Completed::Files;
    return (isFile ? " -r" : " -x") + Values(option);
}

std::string FishCommandOffered(const CommandSpec& command)
{
    const std::string condition = std::string("__signcheck_in ") + command.name;
    std::string text;
    for (const OptionSpec& option : command.options)
    {
        if (option.positional)
        {
            const std::string values = Values(option);
            text += values.empty() ? "" : Line(condition, values.substr(1));
            continue;
        }
        for (const std::string& name : DashedNamesOf(option))
        {
            const bool isFlag = option.kind == OptionKind::Flag;
            text += Line(condition, "-l " + name.substr(2) + " -d " + InFishQuotes(option.help) +
                                        (isFlag ? "" : ValuesOfOption(option)));
        }
    }
    return text;
}

} // namespace

std::string FishCompletion()
{
    std::string text = kFishBegin + WordsAfter("", FirstWords());
    for (const CommandSpec& command : host::Commands())
    {
        text += FishCommandOffered(command);
    }
    return text + Line("__signcheck_is", "-l help") + Line("__signcheck_is", "-l version");
}

} // namespace manual
