#include "host/manual/completed_value.h"

#include <algorithm>
#include <map>

namespace manual
{

Completed CompletedValueOf(const host::OptionSpec& option)
{
    static const std::map<std::string, Completed> byPlaceholder = {
        {"FILE", Completed::Files},   {"TRACE", Completed::Files},
        {"ORDERS", Completed::Files}, {"FOLDER", Completed::Folders},
        {"DIR", Completed::Folders},  {"COMMAND", Completed::Commands}};
    if (option.choices != nullptr)
    {
        return Completed::Choices;
    }
    const auto found = byPlaceholder.find(option.placeholder);
    return found == byPlaceholder.end() ? Completed::Nothing : found->second;
}

std::vector<std::string> ChoicesOf(const host::OptionSpec& option)
{
    std::vector<std::string> choices;
    const std::string listed = option.choices == nullptr ? "" : option.choices;
    for (std::size_t begin = 0; begin < listed.size();)
    {
        const std::size_t end = std::min(listed.find('|', begin), listed.size());
        choices.push_back(listed.substr(begin, end - begin));
        begin = end + 1;
    }
    return choices;
}

std::vector<std::string> DashedNamesOf(const host::OptionSpec& option)
{
    std::vector<std::string> names;
    if (option.alias != nullptr)
    {
        names.push_back(std::string("--") + option.alias);
    }
    names.push_back(std::string("--") + option.name);
    return names;
}

const host::OptionSpec* ArgumentOf(const host::CommandSpec& command)
{
    const auto found = std::find_if(command.options.begin(), command.options.end(),
                                    [](const auto& option) { return option.positional; });
    return found == command.options.end() ? nullptr : &*found;
}

} // namespace manual
