#include "host/command_line.h"

#include "host/exit_status_table.h"
#include "host/refusal.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "signutils/version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>

namespace host
{

namespace
{

constexpr const char* kSummary =
    "Judges the signatures of order files against the signature rules of their contracts.";
// What a newcomer does first, in this order.
constexpr const char* kFirstCommands[] = {"init", "doctor", "check", "history"};

std::string AllCommands()
{
    std::string names;
    for (const std::string& name : CommandNames())
    {
        names += (names.empty() ? "" : ", ") + name;
    }
    return names;
}

std::string ExampleText(const Example& example)
{
    return std::string("\n  ") + example.purpose + ":\n    " + example.line;
}

std::string ExamplesText(const CommandSpec& spec)
{
    std::string text = "Examples:";
    for (const Example& example : spec.examples)
    {
        text += ExampleText(example);
    }
    return text;
}

// The first example of each command of a group.
std::string GroupExamplesText(const std::string& word)
{
    std::string text = "Examples:";
    for (const CommandSpec& spec : Commands())
    {
        if (std::string(spec.name).starts_with(word + " "))
        {
            text += ExampleText(spec.examples.front());
        }
    }
    return text;
}

std::string StatusesText(const std::vector<Ending>& endings)
{
    constexpr std::size_t kWidth = 4;
    std::string text = "Exit status:\n";
    for (const Ending& ending : endings)
    {
        std::string number = std::to_string(ending.status);
        number.resize(kWidth, ' ');
        text += "  " + number + ending.meaning + "\n";
    }
    return text + "\n";
}

// Of all commands: how they end, and how to begin.
std::string CommonText()
{
    std::string text = StatusesText(EveryEnding()) + "Examples:";
    for (const char* const name : kFirstCommands)
    {
        text += ExampleText(FindCommand(name)->examples.front());
    }
    return text;
}

// Whether an argument is the name, without dashes, of an option of the command.
bool IsOptionWord(const CommandSpec& command, const std::string& word)
{
    const auto& options = command.options;
    return std::any_of(options.begin(), options.end(),
                       [&word](const OptionSpec& option) {
                           return word == option.name ||
                                  (option.alias != nullptr && word == option.alias);
                       });
}

/// A command as the parser knows it, with the places that its options are read into.
struct ParsedCommand
{
    const CommandSpec* spec = nullptr;
    CLI::App* app = nullptr;
    std::vector<std::pair<const OptionSpec*, CLI::Option*>> options;
};

class Parser
{
public:
    Parser() : m_app(kSummary, "signcheck")
    {
        m_app.footer(CommonText());
        m_app.require_subcommand(0, 1);
        m_app.allow_extras();
        m_app.allow_windows_style_options(false);
        m_app.set_version_flag("--version", "signcheck " SIGNUTILS_VERSION);
        for (const CommandSpec& spec : Commands())
        {
            AddCommand(spec);
        }
    }

    CommandLine Read(const std::vector<std::string>& arguments)
    {
        CommandLine line;
        try
        {
            m_app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        }
        catch (const CLI::CallForHelp&)
        {
            line.helpText = m_app.help();
            return line;
        }
        catch (const CLI::CallForVersion& version)
        {
            line.helpText = std::string(version.what()) + "\n";
            return line;
        }
        catch (const CLI::ParseError& error)
        {
            RefuseMissingValue(arguments);
            throw UsageRefusal(Printable(error.what()) +
                               ". Run signcheck --help, or signcheck COMMAND --help.");
        }
        const ParsedCommand& parsed = Chosen();
        RefuseExtras(parsed);
        line.command = parsed.spec;
        Collect(parsed, line.values);
        return line;
    }

private:
    void AddCommand(const CommandSpec& spec)
    {
        ParsedCommand parsed;
        parsed.spec = &spec;
        const std::string name = spec.name;
        const std::size_t blank = name.find(' ');
        parsed.app = blank == std::string::npos
                         ? AddWord(m_app, name, spec.summary)
                         : AddWord(GroupOf(name.substr(0, blank), spec.family),
                                   name.substr(blank + 1), spec.summary);
        if (blank == std::string::npos)
        {
            parsed.app->group(spec.family);
        }
        parsed.app->footer(StatusesText(EndingsOf(spec)) + ExamplesText(spec));
        for (const OptionSpec& option : spec.options)
        {
            parsed.options.emplace_back(&option, AddOption(*parsed.app, option));
        }
        m_commands.push_back(std::move(parsed));
    }

    static CLI::App* AddWord(CLI::App& parent, const std::string& word, const std::string& summary)
    {
        CLI::App* app = parent.add_subcommand(word, summary);
        app->allow_extras();
        app->allow_windows_style_options(false);
        return app;
    }

    CLI::App& GroupOf(const std::string& word, const char* family)
    {
        CLI::App*& group = m_groups[word];
        if (group == nullptr)
        {
            group = AddWord(m_app, word, FindGroup(word)->summary);
            group->group(family);
            group->footer(GroupExamplesText(word));
            group->require_subcommand(0, 1);
        }
        return *group;
    }

    CLI::Option* AddOption(CLI::App& app, const OptionSpec& spec)
    {
        if (spec.kind == OptionKind::Flag)
        {
            return app.add_flag(std::string("--") + spec.name, spec.help);
        }
        const std::string dashed =
            (spec.alias != nullptr ? std::string("--") + spec.alias + "," : std::string()) + "--" +
            spec.name;
        const std::string name = spec.positional ? spec.placeholder : dashed;
        m_texts.emplace_back();
        CLI::Option* option = app.add_option(name, m_texts.back(), spec.help);
        option->type_name(spec.positional ? "" : spec.placeholder);
        // Collect refuses a second value, and can name both.
        option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        return option;
    }

    const ParsedCommand& Chosen() const
    {
        const auto chosen = std::find_if(m_commands.begin(), m_commands.end(),
                                         [](const auto& command) { return command.app->parsed(); });
        if (chosen != m_commands.end())
        {
            RefuseStrayBefore();
            return *chosen;
        }
        RefuseGroupAlone();
        const auto stray = m_app.remaining();
        if (stray.empty())
        {
            throw UsageRefusal("no command was given. Name one of: " + AllCommands() +
                               "; signcheck --help tells what they do.");
        }
        if (stray.front().starts_with('-'))
        {
            throw UsageRefusal("unknown option " + Quoted(stray.front()) +
                               " before the command. Name the command first: signcheck COMMAND "
                               "OPTIONS.");
        }
        throw UsageRefusal("unknown command " + Quoted(stray.front()) + "." +
                           DidYouMean(stray.front(), CommandNames(), "") +
                           " signcheck --help lists the commands.");
    }

    void RefuseGroupAlone() const
    {
        for (const auto& [word, group] : m_groups)
        {
            if (!group->parsed())
            {
                continue;
            }
            std::vector<std::string> words;
            std::string listed;
            for (const CLI::App* command : group->get_subcommands(nullptr))
            {
                words.push_back(command->get_name());
                listed += (listed.empty() ? "" : ", ") + words.back();
            }
            const auto stray = group->remaining();
            throw UsageRefusal(stray.empty()
                                   ? "signcheck " + word + " does nothing by itself. " +
                                         "Name one of: " + listed + "."
                                   : "unknown command " + Quoted(word + " " + stray.front()) + "." +
                                         DidYouMean(stray.front(), words, word + " ") +
                                         " Name one of: " + listed + ".");
        }
    }

    void RefuseStrayBefore() const
    {
        if (const auto stray = m_app.remaining(); !stray.empty())
        {
            throw UsageRefusal("unexpected argument " + Quoted(stray.front()) +
                               " before the command. Name the command first.");
        }
    }

    static void RefuseExtras(const ParsedCommand& parsed)
    {
        auto extras = parsed.app->remaining();
        // The parser heeds the end of the options and lists it all the same.
        std::erase(extras, "--");
        if (extras.empty())
        {
            return;
        }
        const auto dashed = std::find_if(extras.begin(), extras.end(),
                                         [](const auto& extra)
                                         { return extra.size() > 1 && extra.front() == '-'; });
        const std::string help =
            std::string(" signcheck ") + parsed.spec->name + " --help lists the options.";
        if (dashed != extras.end())
        {
            // What stands behind '=' may be a password.
            const std::string name = dashed->substr(0, dashed->find('='));
            const std::string bare =
                name.substr(std::min(name.find_first_not_of('-'), name.size()));
            throw UsageRefusal("unknown option " + Quoted(name) + " of signcheck " +
                               parsed.spec->name + "." +
                               DidYouMean(bare, OptionNames(*parsed.spec), "--") + help);
        }
        throw UsageRefusal("unexpected argument " + Quoted(extras.front()) +
                           ". A value with blanks stands in quotes." + help);
    }

    static std::string FlagText(const CLI::Option& option, const OptionValue& value,
                                const std::string& shown)
    {
        try
        {
            return option.as<bool>() ? kFlagOn : kFlagOff;
        }
        catch (const CLI::ParseError&)
        {
            throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                               " is neither true nor false. Give " + shown + " alone, or as " +
                               shown + "=false.");
        }
    }

    [[noreturn]] static void RefuseRepeated(const OptionSpec& spec,
                                            const std::vector<std::string>& given,
                                            const std::string& origin)
    {
        // A connection string may hold a password.
        const bool isSecret = std::string(spec.name) == "db";
        throw UsageRefusal(
            origin + " was given " + std::to_string(given.size()) + " times" +
            (isSecret ? std::string() : ", as " + Quoted(given[0]) + " and " + Quoted(given[1])) +
            ". Give it once.");
    }

    // The parser takes whatever follows as the value, so only the last argument can lack its own.
    static void RefuseMissingValue(const std::vector<std::string>& arguments)
    {
        if (!arguments.empty() && arguments.back().rfind("--", 0) == 0)
        {
            const std::string shown = arguments.back().substr(0, arguments.back().find('='));
            throw UsageRefusal("option " + Printable(shown) +
                               " has no value: nothing follows it. Give the value behind " +
                               Printable(shown) + ".");
        }
    }

    static void Collect(const ParsedCommand& parsed, OptionValues& values)
    {
        for (const auto& [spec, option] : parsed.options)
        {
            if (option->count() == 0)
            {
                continue;
            }
            const std::string shown =
                spec->positional
                    ? spec->placeholder
                    : std::string("--") + (spec->alias != nullptr ? spec->alias : spec->name);
            OptionValue value;
            value.origin = spec->positional ? "argument " + shown : "option " + shown;
            value.text = option->results().front();
            if (spec->kind == OptionKind::Flag)
            {
                value.text = FlagText(*option, value, shown);
            }
            else if (option->count() > 1)
            {
                RefuseRepeated(*spec, option->results(), value.origin);
            }
            else if (value.text.rfind("--", 0) == 0 &&
                     IsOptionWord(*parsed.spec, value.text.substr(2)))
            {
                throw UsageRefusal(value.origin + " has no value: " + value.text +
                                   " follows it. Give the value behind " + shown + ".");
            }
            values.AddUnlessThere(spec->name, std::move(value));
        }
    }

    CLI::App m_app;
    std::deque<std::string> m_texts; // addresses stay, which the parser holds
    std::map<std::string, CLI::App*> m_groups;
    std::vector<ParsedCommand> m_commands;
};

// Name of the option that the argument at `index` belongs to, for a message.
std::string NameOf(const std::vector<std::string>& arguments, std::size_t index)
{
    const std::string& argument = arguments[index];
    if (argument.rfind("--", 0) == 0 && argument.find('=') != std::string::npos)
    {
        return "option " + Printable(argument.substr(0, argument.find('=')));
    }
    if (index > 0 && arguments[index - 1].rfind("--", 0) == 0)
    {
        return "option " + Printable(arguments[index - 1]);
    }
    return "argument " + std::to_string(index + 1);
}

void RefuseMalformed(const std::vector<std::string>& arguments)
{
    for (std::size_t index = 0; index < arguments.size(); ++index)
    {
        if (IsUtf8(arguments[index]))
        {
            continue;
        }
        const std::string name = NameOf(arguments, index);
        const std::string shown = name == "option --db" ? "the value" : Quoted(arguments[index]);
        throw UsageRefusal(name + ": " + shown +
                           " is no UTF-8 text. Give it in UTF-8, from a terminal or script that "
                           "uses UTF-8.");
    }
}

} // namespace

CommandLine ReadCommandLine(const std::vector<std::string>& arguments)
{
    RefuseMalformed(arguments);
    return Parser().Read(arguments);
}

bool AsksForJson(const std::vector<std::string>& arguments)
{
    for (std::size_t index = 0; index < arguments.size(); ++index)
    {
        for (const char* const name : {"--output-format", "--format"})
        {
            const std::string joined = std::string(name) + "=";
            const std::string value = arguments[index].rfind(joined, 0) == 0
                                          ? arguments[index].substr(joined.size())
                                          : arguments[index];
            const bool isValue =
                value != arguments[index] || (index > 0 && arguments[index - 1] == name);
            if (isValue && (value == "json" || value == "ndjson"))
            {
                return true;
            }
        }
        if (arguments[index] == "--json")
        {
            return true;
        }
    }
    return false;
}

} // namespace host
