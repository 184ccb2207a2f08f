#pragma once

#include <string>
#include <string_view>

namespace support
{

/// How the bytes of an XML document become UTF-8.
enum class XmlEncoding
{
    Parsers,     ///< the parser reads it: UTF-8, UTF-16, US-ASCII, ISO-8859-1, ISO-8859-15
    Windows1252, ///< not every build of the parser knows it: who parses brings it to UTF-8
    Other,       ///< not read
};

/// The encoding that the XML declaration at the document's start names, in capitals. Empty when it
/// names none or is not written in bytes of ASCII.
std::string DeclaredEncoding(std::string_view start);

XmlEncoding EncodingOf(std::string_view name);

} // namespace support
