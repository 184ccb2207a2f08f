#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

// Colours of a terminal. No other file knows an escape sequence.

inline constexpr const char* kColorOption = "color";

enum class Tone
{
    Good,     ///< accepted
    Bad,      ///< refused, or an error
    Doubtful, ///< neither, or a warning
};

/// Settles for the whole run what is coloured: by --color, else where the output is a terminal that
/// takes colours and NO_COLOR is not set. Nothing is before, and what a program reads never is.
/// Raises UsageRefusal.
void SettleColours(const OptionValues& values);

/// The text in its tone where `isColoured`, else as it stands.
std::string Painted(bool isColoured, Tone tone, const std::string& text);

/// The same for standard output and for standard error, as it was settled for them.
std::string ForOutput(Tone tone, const std::string& text);
std::string ForErrors(Tone tone, const std::string& text);
bool AreErrorsColoured();

} // namespace host
