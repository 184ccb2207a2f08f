#pragma once

#include "support/format_argument.h"

#include <cstddef>
#include <string>

namespace support
{

/// One conversion of a template, taken apart.
struct Conversion
{
    enum class Size
    {
        Plain,
        Short, ///< h: 16-bit number, narrow text
        Long,  ///< l: 32-bit number, wide text
        Wide,  ///< ll, I64: 64-bit number
    };

    bool left = false;
    bool plus = false;
    bool blank = false;
    bool zero = false;
    bool alternate = false;
    bool hasPrecision = false;
    std::size_t width = 0;
    std::size_t precision = 0;
    Size size = Size::Plain;
    char type = '\0'; ///< as written; 0 where the template ends or the character is no ASCII one
};

/// Appends the number as its conversion (d i u x X f e g) asks for, padded, in ASCII. False, with
/// nothing appended, when the argument is no number of that kind.
[[nodiscard]] bool AppendNumber(std::string& target, const Conversion& conversion,
                                const FormatArgument& argument);

} // namespace support
