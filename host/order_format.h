#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// A format that the conversion engine reads: the two texts of SetFormatInfo.
struct OrderFormat
{
    std::string format1; ///< "ISO20022"
    std::string format2; ///< "pain.001"

    /// As --format takes it: "ISO20022/pain.001".
    std::string Name() const { return format1 + "/" + format2; }
    bool operator==(const OrderFormat&) const = default;
};

/// The names of all formats, separated by commas, for messages.
std::string KnownOrderFormats();

/// The format of the order file at `path` (Windows-1252): what option --format names, in upper or
/// lower case; without the option, or with `auto`, what the file's content shows. Raises a Refusal:
/// for wrong usage when no format has that name, "could not run" when the content shows none.
OrderFormat ReadOrderFormat(const OptionValues& values, const std::string& path);

/// Raises UsageRefusal when option --format names no format, without a look at any file.
void RefuseUnknownFormat(const OptionValues& values);

} // namespace host
