#include "host/manual/pages.h"

#include "host/command_table.h"
#include "host/exit_status_table.h"
#include "host/manual/completed_value.h"
#include "host/manual/roff.h"
#include "host/settings/variables.h"

#include <algorithm>

namespace manual
{

namespace
{

using host::CommandSpec;
using host::OptionKind;
using host::OptionSpec;

constexpr const char* kProgram = "signcheck";
constexpr const char* kSummary = "judge the signatures of electronic-banking order files";

std::string PageName(const CommandSpec& command)
{
    std::string name = std::string(kProgram) + "-" + command.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

// As apropos shows it: a phrase in lower case.
std::string Phrase(std::string summary)
{
    if (!summary.empty() && summary[0] >= 'A' && summary[0] <= 'Z')
    {
        summary[0] = static_cast<char>(summary[0] + ('a' - 'A'));
    }
    return summary;
}

std::string Sentence(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
    {
        text[0] = static_cast<char>(text[0] - ('a' - 'A'));
    }
    return text + ".";
}

std::string Term(const OptionSpec& option)
{
    if (option.positional)
    {
        return option.placeholder;
    }
    std::string term;
    for (const std::string& name : DashedNamesOf(option))
    {
        term += (term.empty() ? "" : ", ") + name;
    }
    return option.kind == OptionKind::Flag ? term : term + " " + option.placeholder;
}

std::string Description(const OptionSpec& option)
{
    std::string text = Sentence(option.help);
    if (!option.positional && host::MayComeFromEnvironment(option.name))
    {
        text += " Environment: " + host::VariableOf(option.name) + ".";
    }
    return text;
}

void AddOptions(const CommandSpec& command, RoffPage& page)
{
    page.Section("Options");
    for (const bool arguments : {true, false})
    {
        for (const OptionSpec& option : command.options)
        {
            if (option.positional == arguments)
            {
                page.Item(Term(option), Description(option));
            }
        }
    }
    page.Item("--help", "Show the options and examples.");
}

void AddEndings(const std::vector<host::Ending>& endings, RoffPage& page)
{
    page.Section("Exit status");
    for (const host::Ending& ending : endings)
    {
        page.Item(std::to_string(ending.status), Sentence(ending.meaning));
    }
}

void AddSettings(RoffPage& page)
{
    page.Section("Files");
    page.Item("$XDG_CONFIG_HOME/signcheck/config.toml, else ~/.config/signcheck/config.toml",
              "The user's settings. A file named by --config takes its place.");
    page.Item("/etc/signutils/signcheck.toml",
              "The machine's settings, where Debian's packages are installed; else signcheck.toml "
              "beside CtlVEU.INI.");
    page.Paragraph("An option goes before its variable, that before the user's file, and that "
                   "before the machine's. signcheck config shows what holds.");
}

Page PageOf(const CommandSpec& command)
{
    RoffPage page(PageName(command), Phrase(command.summary));
    page.Section("Synopsis");
    const OptionSpec* const argument = ArgumentOf(command);
    page.Paragraph(std::string(kProgram) + " " + command.name + " [OPTION]..." +
                   (argument == nullptr ? "" : std::string(" ") + argument->placeholder));
    AddOptions(command, page);
    AddEndings(host::EndingsOf(command), page);
    AddSettings(page);
    page.Section("Examples");
    for (const host::Example& example : command.examples)
    {
        page.Paragraph(std::string(example.purpose) + ":");
        page.Literal(example.line);
    }
    page.Section("See also");
    page.Paragraph("signcheck(1)");
    return {PageName(command), page.Text()};
}

Page PageOfAll()
{
    RoffPage page(kProgram, kSummary);
    page.Section("Synopsis");
    page.Paragraph("signcheck COMMAND [OPTION]... [ARGUMENT]");
    page.Paragraph("signcheck --help");
    page.Paragraph("signcheck --version");
    page.Section("Description");
    page.Paragraph(
        "signcheck decides whether the signers of an order file satisfy the rules of its "
        "contract, records the decision over ODBC, and shows and explains what was "
        "decided. Each command has a page of its own.");
    page.Section("Commands");
    for (const host::CommandFamily& family : host::Families())
    {
        page.Subsection(family.title);
        for (const CommandSpec& command : family.commands)
        {
            page.Item(command.name,
                      std::string(command.summary) + ": " + PageName(command) + "(1).");
        }
    }
    AddEndings(host::EveryEnding(), page);
    page.Section("Environment");
    page.Paragraph(
        "Options can come from variables named after them, such as SIGNCHECK_DB for --db; "
        "the page of each command names them.");
    page.Item("SIGNUTILS_LANG", "Language of the library's messages: en or fr.");
    AddSettings(page);
    return {kProgram, page.Text()};
}

} // namespace

std::vector<Page> Pages()
{
    std::vector<Page> pages = {PageOfAll()};
    for (const CommandSpec& command : host::Commands())
    {
        pages.push_back(PageOf(command));
    }
    return pages;
}

} // namespace manual
