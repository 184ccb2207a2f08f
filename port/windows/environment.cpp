#include "port/environment.h"

#include "port/files.h"
#include "port/kernel.h"
#include "port/windows/native_text.h"

#include <algorithm>
#include <bcrypt.h>
#include <system_error>

namespace port
{

namespace
{

constexpr std::int64_t kUnitsPerSecond = 10'000'000;     // of 100 ns
constexpr std::int64_t kEpochInSeconds = 11'644'473'600; // 1970 counted from 1601

} // namespace

std::string Environment(const char* name)
{
    return FromNative(NativeVariable(ToNative(name).c_str()));
}

LocalTime ToLocalTime(std::int64_t secondsSinceEpoch)
{
    ULARGE_INTEGER units;
    units.QuadPart =
        static_cast<std::uint64_t>((secondsSinceEpoch + kEpochInSeconds) * kUnitsPerSecond);
    const FILETIME fileTime = {units.LowPart, units.HighPart};
    SYSTEMTIME universal;
    SYSTEMTIME local;
    TIME_ZONE_INFORMATION zone; // with the rules of that year, not of this one
    if (FileTimeToSystemTime(&fileTime, &universal) == 0 ||
        GetTimeZoneInformationForYear(universal.wYear, nullptr, &zone) == 0 ||
        SystemTimeToTzSpecificLocalTime(&zone, &universal, &local) == 0)
    {
        return LocalTime();
    }
    LocalTime time;
    time.year = local.wYear;
    time.month = local.wMonth;
    time.day = local.wDay;
    time.hour = local.wHour;
    time.minute = local.wMinute;
    time.second = local.wSecond;
    return time;
}

std::string StateFolder()
{
    const std::wstring data = NativeVariable(L"ProgramData");
    return JoinPath(data.empty() ? std::string("C:\\ProgramData") : FromNative(data), "SignUtils");
}

std::string SystemConfigurationFolder()
{
    return {};
}

std::string UserConfigurationFolder()
{
    return FromNative(NativeVariable(L"APPDATA"));
}

void RandomBytes(void* bytes, std::size_t size)
{
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 20U;
    auto* next = static_cast<UCHAR*>(bytes);
    while (size > 0)
    {
        const std::size_t part = std::min(size, kMostAtOnce);
        const NTSTATUS status = BCryptGenRandom(nullptr, next, static_cast<ULONG>(part),
                                                BCRYPT_USE_SYSTEM_PREFERRED_RNG);
        if (status < 0)
        {
            throw std::system_error(static_cast<int>(status), std::system_category(),
                                    "no randomness");
        }
        next += part;
        size -= part;
    }
}

} // namespace port
