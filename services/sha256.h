#pragma once

#include <string>
#include <string_view>

namespace services
{

/// The SHA-256 of the bytes as 64 small hexadecimal digits.
std::string Sha256Hex(std::string_view bytes);

} // namespace services
