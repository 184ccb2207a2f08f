#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace services
{

/// All bytes of a file; nothing, with the last error set, when it cannot be read.
std::optional<std::string> ReadFileContents(const std::string& path);

/// Puts these bytes in the place of the file at once and for good: whoever reads it, also after a
/// power cut, finds the old bytes or the new ones. One caller at a time, by a lock of the callers'.
/// False, with the last error set, and the old file untouched.
[[nodiscard]] bool ReplaceFileContents(const std::string& folder, const std::string& name,
                                       std::string_view bytes);

/// The same for a file that other users read, one without worth after a power cut. Any number of
/// callers at a time: each writes under a name of its own first, FILE.….new, which stays where its
/// process is killed meanwhile.
[[nodiscard]] bool ReplaceReadableFile(const std::string& path, std::string_view bytes);

} // namespace services
