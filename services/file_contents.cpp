#include "services/file_contents.h"

#include "port/environment.h"
#include "port/files.h"
#include "port/kernel.h"
#include "services/file_remover.h"
#include "support/format.h"

#include <cstdint>

namespace services
{

namespace
{

bool WriteNewFile(const std::string& path, port::OpenMode mode, std::string_view bytes)
{
    port::File file;
    return file.Open(path.c_str(), mode) && file.Write(bytes.data(), bytes.size()) && file.Flush();
}

// `fresh` is there for no longer than this.
bool Replace(const std::string& path, const std::string& fresh, port::OpenMode mode,
             std::string_view bytes)
{
    FileRemover remover(fresh.c_str());
    if (!WriteNewFile(fresh, mode, bytes) || !port::MoveFileReplacing(fresh.c_str(), path.c_str()))
    {
        return false;
    }
    remover.Keep();
    return true;
}

} // namespace

std::optional<std::string> ReadFileContents(const std::string& path)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        return std::nullopt;
    }
    const std::int64_t size = file.Size();
    if (size < 0)
    {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const std::int64_t read = bytes.empty() ? 0 : file.Read(bytes.data(), bytes.size());
    if (read < 0)
    {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(read));
    return bytes;
}

bool ReplaceFileContents(const std::string& folder, const std::string& name, std::string_view bytes)
{
    const std::string path = port::JoinPath(folder, name);
    const std::string fresh = path + ".new";
    // Left behind by a process that ended here; the callers' lock says that nobody writes it.
    if (port::FileExists(fresh.c_str()))
    {
        DeleteFileA(fresh.c_str());
    }
    return Replace(path, fresh, port::OpenMode::CreateNew, bytes) &&
           port::FlushFolder(folder.c_str());
}

bool ReplaceReadableFile(const std::string& path, std::string_view bytes)
{
    std::uint32_t random[2] = {};
    port::RandomBytes(random, sizeof random);
    const std::string fresh = path + support::FormatA(".%08x%08x.new", random[0], random[1]);
    return Replace(path, fresh, port::OpenMode::CreateNewForReaders, bytes);
}

} // namespace services
