#include "services/file_identifiers.h"

#include "port/files.h"
#include "port/kernel.h"
#include "services/file_contents.h"
#include "services/store_unreachable.h"
#include "support/format.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace services
{

namespace
{

// Longer than any service's name, so that no service's folder can be taken for them.
constexpr char kCounterName[] = "identifiers.counter";
constexpr char kLockName[] = "identifiers.lock";

constexpr std::uint32_t kLastIdentifier = 2147483647U;

/// The digits at the start of a text; nothing without any or beyond the last identifier.
std::optional<std::uint32_t> LeadingNumber(std::string_view text)
{
    std::uint64_t number = 0;
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9')
    {
        number = number * 10 + static_cast<std::uint64_t>(text[digits] - '0');
        if (number > kLastIdentifier)
        {
            return std::nullopt;
        }
        ++digits;
    }
    return digits == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(number));
}

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        RaiseStoreUnreachable("cannot be listed", folder);
    }
    return names;
}

} // namespace

std::optional<std::uint32_t> FileIdentifiers::Next()
{
    return Give(false);
}

std::optional<std::uint32_t> FileIdentifiers::NextBehindFiles()
{
    return Give(true);
}

std::optional<std::uint32_t> FileIdentifiers::Give(bool behindFiles)
{
    port::File lock;
    const std::string lockPath = port::JoinPath(m_store, kLockName);
    if (!lock.Open(lockPath.c_str(), port::OpenMode::Append) || !lock.LockExclusive())
    {
        RaiseStoreUnreachable("cannot be locked", lockPath);
    }
    const std::optional<std::uint32_t> counted = ReadCounter();
    std::uint32_t last = counted.value_or(0);
    if (behindFiles || !counted)
    {
        last = std::max(last, LargestInStore());
    }
    if (last >= kLastIdentifier)
    {
        return std::nullopt;
    }
    // On the disk before it is used: what a crash may take away is a number, never two files' one.
    if (!ReplaceFileContents(m_store, kCounterName, support::FormatA("%u\n", last + 1)))
    {
        RaiseStoreUnreachable("cannot be written", port::JoinPath(m_store, kCounterName));
    }
    return last + 1;
}

std::optional<std::uint32_t> FileIdentifiers::ReadCounter() const
{
    const std::string path = port::JoinPath(m_store, kCounterName);
    if (!port::FileExists(path.c_str()))
    {
        return std::nullopt;
    }
    const std::optional<std::string> bytes = ReadFileContents(path);
    if (!bytes)
    {
        RaiseStoreUnreachable("cannot be read", path);
    }
    const std::optional<std::uint32_t> number = LeadingNumber(*bytes);
    return number && *bytes == support::FormatA("%u\n", *number) ? number : std::nullopt;
}

std::uint32_t FileIdentifiers::LargestInStore() const
{
    std::uint32_t largest = 0;
    for (const std::string& service : NamesIn(m_store))
    {
        const std::string folder = port::JoinPath(m_store, service);
        if (port::FolderExists(folder.c_str()))
        {
            largest = std::max(largest, LargestInService(folder));
        }
    }
    return largest;
}

std::uint32_t FileIdentifiers::LargestInService(const std::string& folder) const
{
    std::uint32_t largest = 0;
    for (const std::string& partner : NamesIn(folder))
    {
        const std::string files = port::JoinPath(folder, partner);
        if (!port::FolderExists(files.c_str()))
        {
            continue;
        }
        for (const std::string& name : NamesIn(files))
        {
            largest = std::max(largest, LeadingNumber(name).value_or(0));
        }
    }
    return largest;
}

} // namespace services
