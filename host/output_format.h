#pragma once

#include "host/option_values.h"

namespace host
{

struct CommandSpec;

/// How a command answers on standard output.
enum class OutputFormat
{
    Table,  ///< for people: tables and words
    Json,   ///< one object, readable
    NdJson, ///< JSON, an object a line
    Csv,    ///< rows for other programs; listing commands only
};

/// The option's name in settings files and on the command line. Where a command reads no order
/// file, the command line also takes --format for it.
inline constexpr const char* kOutputFormatOption = "output-format";
inline constexpr const char* kOutputFormatAlias = "format";

/// What --output-format, --format or --json ask for. Raises UsageRefusal for an unknown format, for
/// one that the command has not, and where --json says otherwise.
OutputFormat OutputFormatFrom(const CommandSpec& command, const OptionValues& values);

/// The same for a command that has checked them already.
OutputFormat OutputFormatFrom(const OptionValues& values);

/// Whether failures are told as JSON too.
bool IsJson(OutputFormat format);

} // namespace host
