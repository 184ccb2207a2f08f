#include "port/environment.h"

#include "port/files.h"
#include "port/posix/native_text.h"
#include "port/posix/state_folder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <pwd.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace port
{

namespace
{

std::string NativeVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

/// HOME, else what the user database says: a service may run without an environment.
std::string HomeFolder()
{
    std::string home = NativeVariable("HOME");
    if (!home.empty())
    {
        return home;
    }
    std::vector<char> buffer(16384);
    passwd entry = {};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr)
    {
        home = found->pw_dir;
    }
    return home;
}

} // namespace

std::string Environment(const char* name)
{
    return FromNative(NativeVariable(name));
}

LocalTime ToLocalTime(std::int64_t secondsSinceEpoch)
{
    const auto seconds = static_cast<std::time_t>(secondsSinceEpoch);
    std::tm parts = {};
    if (localtime_r(&seconds, &parts) == nullptr)
    {
        return LocalTime();
    }
    LocalTime time;
    time.year = parts.tm_year + 1900;
    time.month = parts.tm_mon + 1;
    time.day = parts.tm_mday;
    time.hour = parts.tm_hour;
    time.minute = parts.tm_min;
    time.second = std::min(parts.tm_sec, 59); // a leap second has no place in a time stamp
    return time;
}

std::string StateFolder()
{
    const char* const machineFolder = "/var/lib/signutils";
    return FromNative(ChooseStateFolder(machineFolder, IsWritableFolder(machineFolder),
                                        NativeVariable("XDG_STATE_HOME"), HomeFolder()));
}

std::string SystemConfigurationFolder()
{
    return "/etc/signutils";
}

std::string UserConfigurationFolder()
{
    const std::string chosen = NativeVariable("XDG_CONFIG_HOME");
    if (chosen.starts_with('/'))
    {
        return FromNative(chosen);
    }
    const std::string home = HomeFolder();
    return home.empty() ? std::string() : FromNative(home + "/.config");
}

void RandomBytes(void* bytes, std::size_t size)
{
    constexpr std::size_t kMostAtOnce = 256;
    auto* next = static_cast<unsigned char*>(bytes);
    while (size > 0)
    {
        const std::size_t part = std::min(size, kMostAtOnce);
        if (getentropy(next, part) != 0)
        {
            throw std::system_error(errno, std::generic_category(), "no randomness");
        }
        next += part;
        size -= part;
    }
}

} // namespace port
