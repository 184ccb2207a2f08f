#include "host/text_file.h"

#include "host/order_path.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"

namespace host
{

std::string ReadTextFile(const OptionValue& path, const std::string& what, std::int64_t largestMiB)
{
    constexpr std::int64_t kMiB = std::int64_t{1024} * 1024;
    const std::string narrow = ExistingFilePath(path, what);
    port::File file;
    if (!file.Open(narrow.c_str(), port::OpenMode::Read))
    {
        throw UsageRefusal(path.origin + ": " + what + " " + Quoted(path.text) +
                           " cannot be read. Give its owner the right to read it.");
    }
    const std::int64_t size = file.Size();
    if (size < 0 || size > largestMiB * kMiB)
    {
        throw UsageRefusal(path.origin + ": " + what + " " + Quoted(path.text) +
                           " is larger than " + std::to_string(largestMiB) +
                           " MiB. Give another file.");
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size())
    {
        const std::int64_t count = file.Read(bytes.data() + filled, bytes.size() - filled);
        if (count < 0)
        {
            throw UsageRefusal(path.origin + ": " + what + " " + Quoted(path.text) +
                               " cannot be read to its end. Check the disk.");
        }
        if (count == 0)
        {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace host
