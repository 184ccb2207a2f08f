#pragma once

#include "port/export.h"

#include <cstdint>
#include <string>

namespace port
{

/// Value of an environment variable as Windows-1252 text, empty when it is not set.
SIGNUTILS_PORT_API std::string Environment(const char* name);

/// One broken-down local time.
struct LocalTime
{
    int year = 0;  ///< four digits
    int month = 0; ///< 1 to 12
    int day = 0;   ///< 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0; ///< 0 to 59
};

/// Local time of seconds since 1970-01-01 UTC; thread-safe.
SIGNUTILS_PORT_API LocalTime ToLocalTime(std::int64_t secondsSinceEpoch);

/// Where state is kept when nothing else is said: /var/lib/signutils when writable, else
/// $XDG_STATE_HOME/signutils or ~/.local/state/signutils; %ProgramData%\SignUtils on Windows.
SIGNUTILS_PORT_API std::string StateFolder();

/// The folder of the machine's configuration: /etc/signutils; empty where there is none.
SIGNUTILS_PORT_API std::string SystemConfigurationFolder();

/// The folder of the user's configuration, below which programs have folders of their own:
/// $XDG_CONFIG_HOME, which counts only with a full path, else ~/.config; %APPDATA% on Windows.
/// Empty where the user has none.
SIGNUTILS_PORT_API std::string UserConfigurationFolder();

/// Fills the bytes from the system's source of randomness.
SIGNUTILS_PORT_API void RandomBytes(void* bytes, std::size_t size);

} // namespace port
