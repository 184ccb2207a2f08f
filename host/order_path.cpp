#include "host/order_path.h"

#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"

#include <algorithm>
#include <filesystem>

namespace host
{

const OptionValue& OrderFileArgument(const OptionValues& values, const std::string& example)
{
    const OptionValue* const file = values.Find("file");
    if (file == nullptr)
    {
        throw UsageRefusal("argument FILE is missing. Give the path of the order file, as in: " +
                           example);
    }
    return *file;
}

std::string ExistingFilePath(const OptionValue& value, const std::string& what)
{
    const std::string path = NarrowText(value);
    if (port::FolderExists(path.c_str()))
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " is a folder. Give the path of " + what + ".");
    }
    if (!port::FileExists(path.c_str()))
    {
        std::error_code none;
        if (std::filesystem::exists(std::u8string(value.text.begin(), value.text.end()), none))
        {
            throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                               " is no regular file. Give the path of " + what + ".");
        }
        throw UsageRefusal(value.origin + ": there is no file " + Quoted(value.text) +
                           ". Give the path of " + what + ".");
    }
    return path;
}

std::string FolderOf(const std::string& path)
{
    const auto end = std::find_if(path.rbegin(), path.rend(), port::IsPathSeparator);
    return end == path.rend() ? std::string(".") : std::string(path.begin(), end.base());
}

} // namespace host
