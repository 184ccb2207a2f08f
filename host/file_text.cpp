#include "host/file_text.h"

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

} // namespace host
