#pragma once

#include <cstdint>
#include <string>

namespace host
{

/// The cause as the end of a sentence: ": cause." A driver's text may bring a full stop of its own.
std::string BecauseOf(const std::string& cause);

/// "1 row", "2 rows".
std::string Counted(std::uint64_t count, const char* one, const char* several);

} // namespace host
