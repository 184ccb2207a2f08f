#pragma once

#include <string>

namespace support
{

inline constexpr char kOtherMeasuresFile[] =
    "Name a new file, or one that measures were written to.";

/// Why the text of the measures must not take the place of what lies at `path` (Windows-1252), as
/// the end of a sentence; null when nothing, an empty file or such a text lies there.
const char* ObstacleToMeasures(const std::string& path);

} // namespace support
