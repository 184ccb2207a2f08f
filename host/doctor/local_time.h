#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace doctor
{

// Local times as seconds on a clock that knows no summer time: differences between two of them are
// what their digits say.

/// Seconds of "2026-03-29 14:05:09", whatever follows; nothing for another text.
std::optional<std::int64_t> ClockSeconds(const std::string& localTime);

/// The same of this moment.
std::int64_t ClockSecondsNow();

/// "40 seconds", "5 minutes", "3 hours", "2 days": the largest unit that is there, cut.
std::string AgeInWords(std::int64_t seconds);

} // namespace doctor
