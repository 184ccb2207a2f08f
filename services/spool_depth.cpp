#include "services/spool_depth.h"

#include "port/files.h"
#include "services/spool_lock.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace services
{

namespace
{

constexpr std::size_t kBlock = std::size_t{64} * 1024;

std::optional<std::uint64_t> CountLines(const std::string& path)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        return std::nullopt;
    }
    std::string block(kBlock, '\0');
    std::uint64_t lines = 0;
    char last = '\n';
    std::int64_t read = file.Read(block.data(), block.size());
    for (; read > 0; read = file.Read(block.data(), block.size()))
    {
        const std::string_view bytes(block.data(), static_cast<std::size_t>(read));
        lines += static_cast<std::uint64_t>(std::count(bytes.begin(), bytes.end(), '\n'));
        last = bytes.back();
    }
    if (read < 0)
    {
        return std::nullopt;
    }
    // A line that a crash tore off is still to be looked at.
    return last == '\n' ? lines : lines + 1;
}

// Nothing once the file is gone: all of it was delivered.
std::optional<std::uint64_t> CountEvents(const std::string& path, const std::string& lockPath)
{
    if (port::FileSize(path.c_str()) == 0)
    {
        return 0;
    }
    std::optional<std::uint64_t> lines;
    if (const SpoolLock lock(lockPath); lock.IsHeld())
    {
        lines = CountLines(path);
    }
    return lines || port::FileExists(path.c_str()) ? lines : 0;
}

} // namespace

SpoolDepth DepthOfSpool(const std::string& folder)
{
    SpoolDepth depth;
    if (!port::FolderExists(folder.c_str()))
    {
        return depth;
    }
    std::vector<std::string> names;
    // Nothing is locked in a folder that somebody else could have filled.
    if (!port::CreatePrivateFolder(folder.c_str()) || !port::ListFolder(folder.c_str(), names))
    {
        depth.unreadable = 1;
        return depth;
    }
    for (const std::string& name : names)
    {
        if (!name.ends_with(kSpoolEvents))
        {
            continue;
        }
        const std::string path = port::JoinPath(folder, name);
        const std::string stem = path.substr(0, path.size() - std::size(kSpoolEvents) + 1);
        const auto events = CountEvents(path, stem + kSpoolAppendLock);
        depth.events += events.value_or(0);
        depth.unreadable += events ? 0 : 1;
    }
    return depth;
}

} // namespace services
