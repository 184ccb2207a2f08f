#pragma once

namespace host
{

// How signcheck ends. Scripts build on these numbers.
inline constexpr int kDone = 0;
inline constexpr int kFindings = 1; ///< refused by the rules; a set-up or query that was refused
inline constexpr int kNoRule = 2;
inline constexpr int kCouldNotRun = 3;
inline constexpr int kAmountsUnknown = 4;
inline constexpr int kUsage = 64;

} // namespace host
