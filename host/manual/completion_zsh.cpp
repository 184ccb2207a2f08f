#include "host/command_table.h"
#include "host/manual/completed_value.h"
#include "host/manual/completion.h"
#include "host/manual/shell_words.h"

#include <string_view>

namespace manual
{

namespace
{

using host::CommandSpec;
using host::OptionKind;
using host::OptionSpec;

constexpr const char* kZshBegin = R"(#compdef signcheck
# Completion of signcheck for zsh, made from its commands.

_signcheck()
{
    local -a words_here
    local command=$words[2]
)";

constexpr const char* kZshEnd = R"(}

_signcheck "$@"
)";

std::string Escaped(std::string_view text, std::string_view letters)
{
    std::string escaped;
    for (const char letter : text)
    {
        escaped += letters.find(letter) == std::string_view::npos ? "" : "\\";
        escaped += letter;
    }
    return escaped;
}

std::string Described(const std::vector<FirstWord>& words)
{
    std::string text;
    for (const FirstWord& word : words)
    {
        text += " " + InSingleQuotes(word.word + ":" + Escaped(word.summary, ":\\"));
    }
    return "words_here=(" + text + " )";
}

std::string ZshFirstWordsOffered()
{
    const std::vector<FirstWord> words = FirstWords();
    std::string text = "    if (( CURRENT == 2 )); then\n        " + Described(words) +
                       "\n        words_here+=( '--help:list the commands' "
                       "'--version:show the version' )"
                       "\n        _describe command words_here\n        return\n    fi\n"
                       "    case $command in\n";
    for (const FirstWord& word : words)
    {
        if (!word.further.empty())
        {
            text += "    " + word.word + ")\n        if (( CURRENT == 3 )); then\n            " +
                    Described(word.further) +
                    "\n            _describe command words_here\n            return\n        fi\n"
                    "        command=\"$words[2] $words[3]\"\n        shift words\n"
                    "        (( CURRENT-- ))\n        ;;\n";
        }
    }
    return text + "    esac\n    shift words\n    (( CURRENT-- ))\n";
}

std::string Action(const OptionSpec& option)
{
    switch (CompletedValueOf(option))
    {
    case Completed::Choices:
        return "(" + Joined(ChoicesOf(option)) + ")";
    case Completed::Commands:
    {
        std::vector<std::string> names;
        for (const FirstWord& word : FirstWords())
        {
            names.push_back(word.word);
        }
        return "(" + Joined(names) + ")";
    }
    case Completed::Files:
        return "_files";
    case Completed::Folders:
        return "_files -/";
    case Completed::Nothing:
        break;
    }
    return " ";
}

std::string Value(const OptionSpec& option)
{
    return Escaped(option.placeholder, ":\\") + ":" + Action(option);
}

std::string OptionOffered(const OptionSpec& option, const std::string& name)
{
    const std::string help = "[" + Escaped(option.help, "[]:\\") + "]";
    return option.kind == OptionKind::Flag ? name + help : name + "=" + help + ":" + Value(option);
}

std::string ZshCommandOffered(const CommandSpec& command)
{
    std::string text = "    " + InSingleQuotes(command.name) + ")\n        _arguments";
    const auto add = [&text](const std::string& word)
    { text += " \\\n            " + InSingleQuotes(word); };
    for (const OptionSpec& option : command.options)
    {
        if (option.positional)
        {
            add("1:" + Value(option));
            continue;
        }
        for (const std::string& name : DashedNamesOf(option))
        {
            add(OptionOffered(option, name));
        }
    }
    add("--help[show the options and examples]");
    return text + "\n        ;;\n";
}

} // namespace

std::string ZshCompletion()
{
    std::string text = kZshBegin + ZshFirstWordsOffered() + "    case $command in\n";
    for (const CommandSpec& command : host::Commands())
    {
        text += ZshCommandOffered(command);
    }
    return text + "    esac\n" + kZshEnd;
}

} // namespace manual
