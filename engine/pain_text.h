#pragma once

#include <string>
#include <string_view>

namespace engine
{

// Texts of an ISO 20022 message as the work files have them, Windows-1252.

/// At most as long as any text that is written may be; a part of the text given.
std::string_view Shortened(std::string_view text);

/// "2026-03-29" or "2026-03-29T10:00:00" as 20260329; anything else gives an empty text.
std::string PlainDate(std::string_view text);

} // namespace engine
