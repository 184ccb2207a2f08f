#include "host/manual/shell_words.h"

#include "host/command_table.h"

#include <algorithm>

namespace manual
{

namespace
{

FirstWord& GroupIn(std::vector<FirstWord>& words, const std::string& group)
{
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&group](const auto& word) { return word.word == group; });
    if (found != words.end())
    {
        return *found;
    }
    words.push_back({group, host::FindGroup(group)->summary});
    return words.back();
}

} // namespace

std::string InSingleQuotes(std::string_view text)
{
    std::string quoted = "'";
    for (const char letter : text)
    {
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    }
    return quoted + "'";
}

std::string InFishQuotes(std::string_view text)
{
    std::string quoted = "'";
    for (const char letter : text)
    {
        quoted += letter == '\'' || letter == '\\' ? "\\" : "";
        quoted += letter;
    }
    return quoted + "'";
}

std::string Joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
    {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::vector<FirstWord> FirstWords()
{
    std::vector<FirstWord> words;
    for (const host::CommandSpec& command : host::Commands())
    {
        const std::string name = command.name;
        const std::size_t blank = name.find(' ');
        if (blank == std::string::npos)
        {
            words.push_back({name, command.summary});
        }
        else
        {
            GroupIn(words, name.substr(0, blank))
                .further.push_back({name.substr(blank + 1), command.summary});
        }
    }
    return words;
}

} // namespace manual
