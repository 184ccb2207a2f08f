#include "host/file_text.h"

#include "host/order_path.h"
#include "host/refusal.h"
#include "host/text.h"

#include <utility>

namespace host
{

std::optional<std::string> TextFrom(port::File& file, std::int64_t from)
{
    constexpr std::size_t kBlock = 65536;
    if (!file.Seek(from))
    {
        return std::nullopt;
    }
    std::string text;
    std::string block(kBlock, '\0');
    for (;;)
    {
        const std::int64_t count = file.Read(block.data(), block.size());
        if (count < 0)
        {
            return std::nullopt;
        }
        if (count == 0)
        {
            return text;
        }
        text.append(block, 0, static_cast<std::size_t>(count));
    }
}

std::optional<std::string> FileText(const std::string& path, std::int64_t from)
{
    port::File file;
    return file.Open(path.c_str(), port::OpenMode::Read) ? TextFrom(file, from) : std::nullopt;
}

std::string ReadTextFile(const OptionValue& path, const std::string& what, std::int64_t largestMiB)
{
    constexpr std::int64_t kMiB = std::int64_t{1024} * 1024;
    const std::string narrow = ExistingFilePath(path, what);
    const std::string named = path.origin + ": " + what + " " + Quoted(path.text);
    port::File file;
    if (!file.Open(narrow.c_str(), port::OpenMode::Read))
    {
        throw UsageRefusal(named + " cannot be read. Give its owner the right to read it.");
    }
    const std::int64_t size = file.Size();
    if (size < 0 || size > largestMiB * kMiB)
    {
        throw UsageRefusal(named + " is larger than " + std::to_string(largestMiB) +
                           " MiB. Give another file.");
    }
    std::optional<std::string> text = TextFrom(file, 0);
    if (!text)
    {
        throw UsageRefusal(named + " cannot be read to its end. Check the disk.");
    }
    return *std::move(text);
}

} // namespace host
