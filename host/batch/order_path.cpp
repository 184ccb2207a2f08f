#include "host/batch/order_path.h"

#include "host/real_place.h"
#include "host/refusal.h"
#include "host/text.h"

#include <filesystem>

namespace batch
{

namespace
{

namespace fs = std::filesystem;

fs::path Native(const std::string& utf8)
{
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string Utf8(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace

std::string AbsolutePath(const std::string& path)
{
    fs::path clean;
    // Only what stands for nothing goes: ".." behind a link does not lead where it seems to.
    for (const fs::path& part : fs::absolute(Native(path)))
    {
        if (part != "." && !part.empty())
        {
            clean /= part;
        }
    }
    return Utf8(clean);
}

std::string AbsolutePath(const std::string& path, const std::string& folder)
{
    return AbsolutePath(Utf8(Native(folder) / Native(path)));
}

std::string FolderOf(const std::string& path)
{
    return Utf8(Native(path).parent_path());
}

std::string NameIn(const std::string& path)
{
    return Utf8(Native(path).filename());
}

bool IsFolder(const std::string& path)
{
    std::error_code failed;
    return fs::is_directory(Native(path), failed);
}

bool IsThere(const std::string& path)
{
    std::error_code failed;
    return fs::exists(fs::symlink_status(Native(path), failed));
}

void RefuseAmongOrders(const host::OptionValue& file, const std::string& folder)
{
    if (host::LiesWithin(file.text, folder))
    {
        throw host::UsageRefusal(file.origin + ": " + host::Quoted(file.text) +
                                 " lies in the folder whose orders are judged. Name a file "
                                 "outside of it.");
    }
}

std::optional<std::string> VersionOf(const std::string& path)
{
    std::error_code failed;
    const fs::path native = Native(path);
    if (!fs::is_regular_file(native, failed))
    {
        return std::nullopt;
    }
    const auto size = fs::file_size(native, failed);
    if (failed)
    {
        return std::nullopt;
    }
    const auto changed = fs::last_write_time(native, failed);
    if (failed)
    {
        return std::nullopt;
    }
    return std::to_string(size) + "/" + std::to_string(changed.time_since_epoch().count());
}

} // namespace batch
