#pragma once

#include "tests/model/tables.h"

#include <cstddef>
#include <string>
#include <string_view>

// Texts as the documents tell them, written plainly.

namespace model
{

/// Blanks, tabs, CR and LF at both ends.
Text Trimmed(const Text& text);

Text Cut(const Text& text, std::size_t length);

/// Every apostrophe twice.
Text Doubled(const Text& text);

/// What a literal holds when the text stands in it as it is; nothing when the text would end the
/// literal: an apostrophe that has no partner beside it.
NullableText LiteralValue(const Text& text);

/// SQLite's LOWER: ASCII letters only.
Text AsciiLower(Text text);

/// Simple Unicode lower-casing of the alphabets that the scenarios draw from.
wchar_t LowerCase(wchar_t character);

/// Equal without regard to case over the first 255 characters.
bool SameCertificateName(const Text& left, const Text& right);

/// What is left of a text that crosses Windows-1252.
Text ThroughCodePage(const Text& text);
std::string NarrowOf(const Text& text);
Text WideOf(std::string_view bytes);

std::string Utf8Of(const Text& text);

/// Leading decimal digits behind blanks and one sign; saturates.
std::int32_t IntegerOf(const NullableText& text);
std::int32_t IntegerOf(const NullableNumber& number);

} // namespace model
