#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rulebook
{

/// One record of a CSV file.
struct CsvRecord
{
    std::size_t line = 0; ///< where it begins, from 1
    std::string text;     ///< as it stands, without its line end
    std::vector<std::string> fields;
    std::string fault; ///< why it cannot be taken apart, a sentence; empty when it can
};

/// What separates the fields of a file: ';', ',' or a tab, whichever its first line has first.
/// Lines that are blank or begin with `comment` are passed over.
char SeparatorOf(std::string_view csv, std::string_view comment);

/// Takes a file apart. A field in double quotes may hold separators, line ends and doubled quotes.
/// Empty lines and those that begin with `comment` are left out. A quote that is not closed ends
/// its record at the end of its line, so that one mistake costs one line.
std::vector<CsvRecord> ReadCsv(std::string_view csv, char separator, std::string_view comment);

} // namespace rulebook
