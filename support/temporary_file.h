#pragma once

#include <string>
#include <string_view>

namespace support
{

/// A path that nobody can foresee in `directory` (null or empty: the folder for temporary files),
/// Windows-1252; nothing is created. Empty when the extension would lead out of the folder.
std::string TemporaryPath(const char* directory, const char* extension);

/// Writes a file that must not exist yet, for its owner only. False, with no file left, when it
/// cannot be written whole.
[[nodiscard]] bool WriteNewFile(const std::string& path, std::string_view bytes);

} // namespace support
