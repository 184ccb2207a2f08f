#include "host/swift_message.h"
#include "host/text.h"

#include <algorithm>
#include <array>

namespace host
{

namespace
{

// The fields of an MT 101, but 28D.
constexpr std::array<std::string_view, 31> kFieldTags = {
    "20", "21R", "50C", "50L", "50F", "50G", "50H", "51A", "52A", "52C", "30",
    "25", "21",  "21F", "23E", "32B", "56A", "56C", "56D", "57A", "57C", "57D",
    "59", "59A", "59F", "70",  "77B", "33B", "71A", "25A", "36"};

std::string_view TakeLine(std::string_view& bytes)
{
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1U, bytes.size()));
    return line;
}

bool IsLetterOrDigit(char character)
{
    return IsDigit(character) || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

// "{2:I101…" or "{2:O101…". Blocks begin their line or stand behind marks of a transmission, such
// as 0x01 and '$'; behind words they are part of another text.
std::string TypeOfBlocks(std::string_view line)
{
    constexpr std::size_t kTypeAt = 4;
    const std::size_t block = line.find("{2:");
    const std::string_view before = line.substr(0, line.find('{'));
    if (block == std::string_view::npos || line.size() < block + kTypeAt + 3U ||
        std::any_of(before.begin(), before.end(), IsLetterOrDigit))
    {
        return {};
    }
    const std::string_view type = line.substr(block + kTypeAt, 3);
    return std::all_of(type.begin(), type.end(), IsDigit) ? std::string(type) : std::string();
}

// The tag of a line ":20:…" or ":28D:…"; empty for a continuation line.
std::string_view TagOf(std::string_view line)
{
    if (const std::size_t text = line.find("{4:"); text != std::string_view::npos)
    {
        line.remove_prefix(text + 3U);
    }
    if (!line.starts_with(':'))
    {
        return {};
    }
    const std::size_t end = line.find(':', 1);
    if (end == std::string_view::npos || end < 3 || end > 4)
    {
        return {};
    }
    const std::string_view tag = line.substr(1, end - 1U);
    const bool isTag =
        IsDigit(tag[0]) && IsDigit(tag[1]) && (tag.size() == 2 || (tag[2] >= 'A' && tag[2] <= 'Z'));
    return isTag ? tag : std::string_view();
}

} // namespace

std::string SwiftMessageType(std::string_view bytes)
{
    bool hasFields = false;
    bool hasReference = false;
    while (!bytes.empty())
    {
        const std::string_view line = TakeLine(bytes);
        if (std::string type = TypeOfBlocks(line); !hasFields && !type.empty())
        {
            return type;
        }
        // Text before the first field is no part of a message, and lines without a tag belong to
        // the field before them.
        const std::string_view tag = TagOf(line);
        if (tag == "28D")
        {
            return hasReference ? std::string(kSwiftMt101) : std::string();
        }
        if (!tag.empty() &&
            std::find(kFieldTags.begin(), kFieldTags.end(), tag) == kFieldTags.end())
        {
            return {};
        }
        hasFields = hasFields || !tag.empty();
        hasReference = hasReference || tag == "20";
    }
    return {};
}

} // namespace host
