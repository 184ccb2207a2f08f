#include "host/listing/next_page.h"

#include "database/connection_string.h"
#include "host/command_table.h"

namespace listing
{

namespace
{

constexpr const char* kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                               "_-+./:,=@%";

std::string QuotedForShell(const std::string& text)
{
    if (!text.empty() && text.find_first_not_of(kPlain) == std::string::npos)
    {
        return text;
    }
    std::string quoted = "'";
    for (const char letter : text)
    {
        quoted += letter == '\'' ? "'\\''" : std::string(1, letter);
    }
    return quoted + "'";
}

std::string ValueShown(const std::string& option, const std::string& text)
{
    const bool isSecret = option == "db" && !database::ConnectionString(text).Secrets().empty();
    return isSecret ? "\"$SIGNCHECK_DB\"" : QuotedForShell(text);
}

// In the form in which the command line has it, led by a blank; empty when it was not given there.
std::string Given(const host::OptionSpec& option, const host::OptionValues& values)
{
    const host::OptionValue* const value = values.Find(option.name);
    if (value == nullptr || !value->origin.starts_with("option "))
    {
        return {};
    }
    const std::string name = " " + value->origin.substr(std::string("option ").size());
    if (option.kind == host::OptionKind::Flag)
    {
        return value->text == host::kFlagOn ? name : name + "=false";
    }
    return name + " " + ValueShown(option.name, value->text);
}

} // namespace

std::string CommandOfNextPage(const std::string& command, const host::OptionValues& values,
                              std::int64_t number)
{
    std::string line = "signcheck " + command;
    const host::CommandSpec* const spec = host::FindCommand(command);
    for (const host::OptionSpec& option : spec->options)
    {
        line += std::string(option.name) == "below" ? std::string() : Given(option, values);
    }
    return line + " --below " + std::to_string(number);
}

} // namespace listing
