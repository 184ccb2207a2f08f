#pragma once

#include <string>
#include <string_view>

namespace engine
{

// Texts of an ISO 20022 message as the work files have them.

/// Windows-1252; what has no place becomes '?'.
std::string Narrow(std::string_view utf8);

/// Without blanks and line ends at both ends.
std::string Trimmed(const std::string& text);

/// At most as long as any text that is written may be.
std::string Shortened(const std::string& text);

/// "2026-03-29" or "2026-03-29T10:00:00" as 20260329; anything else gives an empty text.
std::string PlainDate(const std::string& text);

} // namespace engine
