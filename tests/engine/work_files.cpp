#include "tests/engine/work_files.h"

#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace engine_tests
{

namespace
{

Fields SplitQuoted(const std::string& line)
{
    Fields fields;
    std::size_t at = 0;
    while ((at = line.find('"', at)) != std::string::npos)
    {
        const std::size_t end = line.find('"', at + 1U);
        if (end == std::string::npos)
        {
            ADD_FAILURE() << "open quote: " << line;
            break;
        }
        fields.push_back(line.substr(at + 1U, end - at - 1U));
        at = end + 1U;
    }
    return fields;
}

} // namespace

std::vector<Fields> ReadRows(const std::string& path, std::size_t headerLines)
{
    const std::string bytes = testing_support::ReadWholeFile(path);
    std::vector<Fields> rows;
    std::size_t number = 0;
    for (std::size_t start = 0; start < bytes.size();)
    {
        const std::size_t end = bytes.find("\r\n", start);
        if (end == std::string::npos)
        {
            ADD_FAILURE() << path << ": the last line has no CR LF";
            break;
        }
        if (number++ >= headerLines)
        {
            rows.push_back(SplitQuoted(bytes.substr(start, end - start)));
        }
        start = end + 2U;
    }
    return rows;
}

std::vector<std::string> Names(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        const std::u8string name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace engine_tests
