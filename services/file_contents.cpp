#include "services/file_contents.h"

#include "port/files.h"
#include "port/kernel.h"
#include "services/file_remover.h"

namespace services
{

namespace
{

bool WriteNewFile(const std::string& path, std::string_view bytes)
{
    port::File file;
    return file.Open(path.c_str(), port::OpenMode::CreateNew) &&
           file.Write(bytes.data(), bytes.size()) && file.Flush();
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
    FileRemover remover(fresh.c_str());
    if (!WriteNewFile(fresh, bytes) || !port::MoveFileReplacing(fresh.c_str(), path.c_str()))
    {
        return false;
    }
    remover.Keep();
    return port::FlushFolder(folder.c_str());
}

} // namespace services
