#include "support/measures_place.h"

#include "port/plain_file.h"

#include <string_view>

namespace support
{

namespace
{

// Every text of measures begins with the help of a family of ours.
constexpr std::string_view kBeginning = "# HELP signutils_";

} // namespace

const char* ObstacleToMeasures(const std::string& path)
{
    std::string bytes;
    switch (port::ReadPlainFile(path.c_str(), kBeginning.size(), bytes))
    {
    case port::PlainFile::Missing:
        return nullptr;
    case port::PlainFile::Other:
        return "a link, a folder, a pipe or a device lies there";
    case port::PlainFile::Failed:
        return "a file lies there that cannot be read";
    case port::PlainFile::Read:
        break;
    }
    const bool isOurs = bytes.empty() || bytes == kBeginning;
    return isOurs ? nullptr : "a file lies there that holds no measures";
}

} // namespace support
