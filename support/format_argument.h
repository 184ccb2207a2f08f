#pragma once

#include "support/export.h"

#include <cstddef>
#include <type_traits>

class TSimpleString;
class TSimpleStringW;

/// One value handed to the formatter, with its kind. Texts are borrowed: they must live until the
/// call returns. `long` counts as 32 bits, as it does on Windows.
struct FormatArgument
{
    enum class Kind
    {
        None,
        Signed,   ///< 32-bit
        Unsigned, ///< 32-bit
        Signed64,
        Unsigned64,
        Real,
        Narrow, ///< Windows-1252 text
        Wide,
    };

    FormatArgument() noexcept = default;
    FormatArgument(int value) noexcept : kind(Kind::Signed), signedValue(value) {}
    FormatArgument(unsigned int value) noexcept : kind(Kind::Unsigned), unsignedValue(value) {}
    FormatArgument(long value) noexcept : kind(Kind::Signed), signedValue(static_cast<int>(value))
    {
    }
    FormatArgument(unsigned long value) noexcept
        : kind(Kind::Unsigned), unsignedValue(static_cast<unsigned int>(value))
    {
    }
    FormatArgument(long long value) noexcept : kind(Kind::Signed64), signedValue(value) {}
    FormatArgument(unsigned long long value) noexcept : kind(Kind::Unsigned64), unsignedValue(value)
    {
    }
    FormatArgument(double value) noexcept : kind(Kind::Real), realValue(value) {}
    FormatArgument(const char* value) noexcept : kind(Kind::Narrow), narrow(value) {}
    FormatArgument(const wchar_t* value) noexcept : kind(Kind::Wide), wide(value) {}
    SIGNUTILS_API FormatArgument(const TSimpleString& value) noexcept;
    SIGNUTILS_API FormatArgument(const TSimpleStringW& value) noexcept;

    Kind kind = Kind::None;
    long long signedValue = 0;
    unsigned long long unsignedValue = 0;
    double realValue = 0.0;
    const char* narrow = nullptr;
    const wchar_t* wide = nullptr;
};
