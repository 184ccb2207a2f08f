#include "support/temporary_file.h"

#include "port/environment.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/format.h"

#include <algorithm>
#include <cstdint>

namespace support
{

std::string TemporaryPath(const char* directory, const char* extension)
{
    const std::string_view ending = extension == nullptr ? "" : extension;
    if (std::any_of(ending.begin(), ending.end(), port::IsPathSeparator))
    {
        SetLastError(ERROR_INVALID_NAME);
        return {};
    }
    std::uint32_t random[4] = {};
    port::RandomBytes(random, sizeof random);
    std::string name = FormatA("su%08x%08x%08x%08x", random[0], random[1], random[2], random[3]);
    if (!ending.empty())
    {
        name.append(".").append(ending);
    }
    const bool given = directory != nullptr && *directory != '\0';
    return port::JoinPath(given ? std::string(directory) : port::TemporaryFolder(), name);
}

bool WriteNewFile(const std::string& path, std::string_view bytes)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::CreateNew))
    {
        return false;
    }
    if (file.Write(bytes.data(), bytes.size()))
    {
        return true;
    }
    const DWORD reason = GetLastError();
    file.Close();
    DeleteFileA(path.c_str());
    SetLastError(reason);
    return false;
}

} // namespace support
