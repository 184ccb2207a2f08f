#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace engine
{

/// Appends fields in quotes, joined by ';', as they may stand there: line ends and control
/// characters become blanks, a quote an apostrophe, a backslash at the end of a field a slash.
void AppendQuotedRow(std::string& line, std::initializer_list<std::string_view> fields);

} // namespace engine
