#pragma once

#include <string>

namespace host
{

/// The cause as the end of a sentence: ": cause." A driver's text may bring a full stop of its own.
std::string BecauseOf(const std::string& cause);

} // namespace host
