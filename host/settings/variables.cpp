#include "host/settings/variables.h"

#include "host/refusal.h"
#include "host/text.h"
#include "port/program.h"

#include <algorithm>
#include <string_view>

namespace host
{

namespace
{

// Of one order, of one run, or an agreement to what one run does.
constexpr std::string_view kOfOneRun[] = {
    "signers", "total",  "largest", "order-id", "message-id", "file-id", "request", "yes",
    "remove",  "before", "export",  "rejects",  "below",      "keep",    "sample",  "dry-run"};

bool IsArgumentOfACommand(const std::string& option)
{
    return std::any_of(Commands().begin(), Commands().end(),
                       [&option](const CommandSpec& command)
                       {
                           const OptionSpec* const found = FindOption(command, option);
                           return found != nullptr && found->positional;
                       });
}

void RequireTrueOrFalse(const OptionValue& value)
{
    if (value.text != kFlagOn && value.text != kFlagOff)
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " is neither true nor false. Set one of them, or unset it.");
    }
}

} // namespace

std::string VariableOf(const std::string& option)
{
    std::string name = "SIGNCHECK_" + option;
    std::transform(
        name.begin(), name.end(), name.begin(),
        [](char letter)
        {
            const bool isSmall = letter >= 'a' && letter <= 'z';
            return letter == '-' ? '_' : isSmall ? static_cast<char>(letter - ('a' - 'A')) : letter;
        });
    return name;
}

bool MayComeFromEnvironment(const std::string& option)
{
    const bool isOfOneRun =
        std::find(std::begin(kOfOneRun), std::end(kOfOneRun), option) != std::end(kOfOneRun);
    return !isOfOneRun && !IsArgumentOfACommand(option);
}

std::optional<OptionValue> FromEnvironment(const OptionSpec& option)
{
    if (!MayComeFromEnvironment(option.name))
    {
        return std::nullopt;
    }
    const std::string variable = VariableOf(option.name);
    OptionValue value = {port::Utf8Environment(variable.c_str()), variable};
    if (value.text.empty())
    {
        return std::nullopt;
    }
    if (option.kind == OptionKind::Flag)
    {
        RequireTrueOrFalse(value);
    }
    return value;
}

} // namespace host
