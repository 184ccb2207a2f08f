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

// A word that '=' ends is a word of its own to bash, so that a value has its option one or two
// words before it.
constexpr const char* kBashBegin = R"(# Completion of signcheck for bash, made from its commands.

_signcheck_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}

_signcheck_paths()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$cur")
}

_signcheck()
{
    local cur=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [[ $cur == "=" ]]; then
        cur=
    elif [[ $option == "=" ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
)";

constexpr const char* kBashEnd = R"(}

complete -F _signcheck signcheck
)";

std::vector<std::string> WordsOf(const std::vector<FirstWord>& all)
{
    std::vector<std::string> words;
    words.reserve(all.size());
    for (const FirstWord& word : all)
    {
        words.push_back(word.word);
    }
    return words;
}

// What offers the value of an option or argument; ":" where nothing can be offered.
std::string Offer(const OptionSpec& option)
{
    switch (CompletedValueOf(option))
    {
    case Completed::Choices:
        return "_signcheck_words " + InSingleQuotes(Joined(ChoicesOf(option)));
    case Completed::Commands:
        return "_signcheck_words " + InSingleQuotes(Joined(WordsOf(FirstWords())));
    case Completed::Files:
        return "_signcheck_paths -f";
    case Completed::Folders:
        return "_signcheck_paths -d";
    case Completed::Nothing:
        break;
    }
    return ":";
}

std::string BashFirstWordsOffered()
{
    const std::vector<FirstWord> words = FirstWords();
    std::string text = "    if [[ $COMP_CWORD -eq 1 ]]; then\n"
                       "        _signcheck_words " +
                       InSingleQuotes(Joined(WordsOf(words)) + " --help --version") +
                       "\n        return\n    fi\n    case $command in\n";
    for (const FirstWord& word : words)
    {
        if (!word.further.empty())
        {
            text += "    " + word.word +
                    ")\n        if [[ $COMP_CWORD -eq 2 ]]; then\n            _signcheck_words " +
                    InSingleQuotes(Joined(WordsOf(word.further)) + " --help") +
                    "\n            return\n        fi\n"
                    "        command+=\" ${COMP_WORDS[2]}\"\n        ;;\n";
        }
    }
    return text + "    esac\n";
}

std::string ValuesOffered(const CommandSpec& command)
{
    std::string text;
    for (const OptionSpec& option : command.options)
    {
        if (option.positional || option.kind == OptionKind::Flag)
        {
            continue;
        }
        std::string patterns;
        for (const std::string& name : DashedNamesOf(option))
        {
            patterns += (patterns.empty() ? "" : " | ") + name;
        }
        text += "        " + patterns + ")\n            " + Offer(option) +
                "\n            return\n            ;;\n";
    }
    return text.empty() ? text : "        case $option in\n" + text + "        esac\n";
}

std::string OptionsOf(const CommandSpec& command)
{
    std::vector<std::string> names;
    for (const OptionSpec& option : command.options)
    {
        if (!option.positional)
        {
            for (const std::string& name : DashedNamesOf(option))
            {
                names.push_back(name);
            }
        }
    }
    names.emplace_back("--help");
    return Joined(names);
}

// Options where a dash begins one, and where the command has no argument that could be offered.
std::string BashCommandOffered(const CommandSpec& command)
{
    const OptionSpec* const argument = ArgumentOf(command);
    const std::string options = "_signcheck_words " + InSingleQuotes(OptionsOf(command));
    const std::string label =
        "    " + InSingleQuotes(command.name) + ")\n" + ValuesOffered(command);
    if (argument == nullptr || CompletedValueOf(*argument) == Completed::Nothing)
    {
        return label + "        " + options + "\n        ;;\n";
    }
    return label + "        if [[ $cur == -* ]]; then\n            " + options +
           "\n        else\n            " + Offer(*argument) + "\n        fi\n        ;;\n";
}

} // namespace

std::string BashCompletion()
{
    std::string text = kBashBegin + BashFirstWordsOffered() + "    case $command in\n";
    for (const CommandSpec& command : host::Commands())
    {
        text += BashCommandOffered(command);
    }
    return text + "    esac\n" + kBashEnd;
}

} // namespace manual
