#pragma once

#include <string>

namespace host
{

/// Whether the conversion engine says that the order file itself is at fault: none of its format,
/// broken, or built to do harm. Everything else is the machine's trouble: no engine, no room, work
/// files that cannot be made. `told` is the library's text, Windows-1252.
bool IsOrdersFault(const std::string& told);

} // namespace host
