#pragma once

#include <string>
#include <string_view>

namespace host
{

inline constexpr std::string_view kSwiftMt101 = "101";

/// The type of the first SWIFT message, three digits, as its block 2 says. A bare text block says
/// none: it is an MT 101 when field 28D, which only that type has, follows field 20 and nothing but
/// fields of that type stands before it. Empty when the bytes show neither.
std::string SwiftMessageType(std::string_view bytes);

} // namespace host
