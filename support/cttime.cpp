#include "support/cttime.h"

#include "port/environment.h"
#include "support/checked_copy.h"
#include "support/format.h"

#include <chrono>

namespace
{

constexpr std::int64_t kMillisecondsPerSecond = 1000;

void WriteLocal(const CTTime& time, const char* format, char* buffer, std::size_t size)
{
    const port::LocalTime local = port::ToLocalTime(time.GetTime());
    const std::string text = support::FormatA(format, local.year, local.month, local.day,
                                              local.hour, local.minute, local.second);
    support::TruncatingCopy(buffer, size, text.c_str());
}

} // namespace

CTTime CTTime::GetTickCount()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return FromMilliseconds(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

CTTime CTTime::FromMilliseconds(std::int64_t millisecondsSinceEpoch)
{
    CTTime time;
    time.m_milliseconds = millisecondsSinceEpoch;
    return time;
}

std::int64_t CTTime::GetTime() const noexcept
{
    const std::int64_t seconds = m_milliseconds / kMillisecondsPerSecond;
    return m_milliseconds % kMillisecondsPerSecond < 0 ? seconds - 1 : seconds;
}

std::int64_t CTTime::GetMilliseconds() const noexcept
{
    return m_milliseconds;
}

void CTTime::GetExtendedISOTimestamp(char* buffer, std::size_t size) const
{
    WriteLocal(*this, "%04d-%02d-%02dT%02d:%02d:%02d", buffer, size);
}

void CTTime::GetDatabaseTimestamp(char* buffer, std::size_t size) const
{
    WriteLocal(*this, "%04d-%02d-%02d %02d:%02d:%02d", buffer, size);
}
