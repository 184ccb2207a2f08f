#pragma once

#include <string>
#include <string_view>

namespace support
{

/// A text as it stands on one line of a trace, in UTF-8: control characters, line ends among them,
/// are shown as \r, \n, \xHH or \uHHHH, so that no value can pass for a line of its own. A tab
/// stays, and so does a backslash: paths are to be read as they are.
std::string TraceLineText(std::wstring_view text);

/// The lines of a block, each indented; CR LF, LF and CR end a line, and the last needs no end.
std::string TraceBlockText(std::wstring_view text);

} // namespace support
