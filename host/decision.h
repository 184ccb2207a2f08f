#pragma once

#include <string>

namespace host
{

/// Adds what was decided, as a paragraph: "REFUSED: the signatures …". The words before the colon
/// are coloured where the output is.
void AppendDecision(std::string& text, const std::string& sentence);

/// The words of a verdict, such as "REFUSED", in their colour.
std::string ColouredVerdict(const std::string& words);

} // namespace host
