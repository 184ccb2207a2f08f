#pragma once

#include <string>
#include <string_view>

namespace support
{

/// Whether a text may become one element of a path in the store. The answer is the same on every
/// platform, so that a store can be moved: refused are an empty name, "." and "..", separators,
/// drive letters, wildcards, control characters, a final dot or blank, and the names of devices,
/// which Windows knows in every folder and with any extension.
bool IsStoreName(std::string_view name);

/// What follows the last point of a path's last element; empty without one.
std::string ExtensionOf(std::string_view path);

} // namespace support
