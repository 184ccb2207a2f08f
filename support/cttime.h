#pragma once

#include <cstddef>
#include <cstdint>

/// A moment, to the millisecond.
class CTTime
{
public:
    /// The current time.
    static CTTime GetTickCount();
    static CTTime FromMilliseconds(std::int64_t millisecondsSinceEpoch);

    /// Seconds since 1970-01-01 UTC.
    std::int64_t GetTime() const noexcept;
    std::int64_t GetMilliseconds() const noexcept;

    /// Local date and time as ISO 20022 takes it, "2026-03-29T14:05:09", cut to the buffer.
    void GetExtendedISOTimestamp(char* buffer, std::size_t size) const;
    /// The same with a blank for the T, as databases take it.
    void GetDatabaseTimestamp(char* buffer, std::size_t size) const;

private:
    std::int64_t m_milliseconds = 0;
};
