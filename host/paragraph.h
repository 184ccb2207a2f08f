#pragma once

#include <string>

namespace host
{

/// Adds one titled paragraph for a terminal of 80 columns; further lines stand below its first.
void AppendParagraph(std::string& text, const std::string& title, const std::string& words);

} // namespace host
