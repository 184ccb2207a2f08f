#include "host/batch/journal_lines.h"

#include <nlohmann/json.hpp>

#include <string_view>

namespace batch
{

namespace
{

using nlohmann::ordered_json;

// False for a line that is none of a journal.
bool Apply(const ordered_json& object, JournalContent& content)
{
    auto& known = content.known;
    if (object.contains("begun"))
    {
        known[object.at("begun").get<std::string>()] = {object.at("file").get<std::string>(), false,
                                                        object.at("after").get<long long>(), 0,
                                                        object.at("asked").get<std::string>()};
        return true;
    }
    if (object.contains("done"))
    {
        known[object.at("done").get<std::string>()] = {object.at("file").get<std::string>(), true,
                                                       0, object.at("at").get<long long>(), ""};
        return true;
    }
    if (object.contains("givenUp"))
    {
        known.erase(object.at("givenUp").get<std::string>());
        return true;
    }
    if (object.contains("database"))
    {
        content.database = object.at("database").get<std::string>();
        return true;
    }
    return false;
}

bool ReadLine(const std::string& line, std::size_t number, JournalContent& content)
{
    if (number == 1)
    {
        return line == kFirstJournalLine;
    }
    try
    {
        return Apply(ordered_json::parse(line), content);
    }
    catch (const ordered_json::exception&)
    {
        return false;
    }
}

} // namespace

std::string LineOfBegun(const std::string& key, const Progress& progress)
{
    return ordered_json({{"begun", key},
                         {"file", progress.version},
                         {"asked", progress.asked},
                         {"after", progress.after}})
        .dump();
}

std::string LineOfDone(const std::string& key, const Progress& progress, const std::string& outcome)
{
    return ordered_json({{"done", key},
                         {"file", progress.version},
                         {"outcome", outcome},
                         {"at", progress.at}})
        .dump();
}

std::string LineOfGivenUp(const std::string& key)
{
    return ordered_json({{"givenUp", key}}).dump();
}

std::string LineOfDatabase(const std::string& database)
{
    return ordered_json({{"database", database}})
        .dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

JournalContent ReadJournalLines(const std::string& text)
{
    JournalContent content;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin))
    {
        ++content.lines;
        if (!ReadLine(text.substr(begin, end - begin), content.lines, content))
        {
            content.faulty = content.lines;
            return content;
        }
        begin = end + 1;
        content.bytes = begin;
    }
    // Another file without a line end must not be taken for a journal that a kill cut short.
    if (content.lines == 0 && !std::string_view(kFirstJournalLine).starts_with(text))
    {
        content.faulty = 1;
    }
    return content;
}

} // namespace batch
