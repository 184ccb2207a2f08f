#pragma once

#include <string>
#include <string_view>

namespace host
{

/// The first message element of an XML document, or why there is none.
struct XmlMessage
{
    enum class Kind
    {
        None,
        Pain001,
        Pain008,
    };

    Kind kind = Kind::None;
    std::string problem; ///< UTF-8, the end of a sentence
};

/// Looks for the message element of a pain.001 or pain.008, by local name, at any depth, in any
/// encoding that the engine reads. `bytes` are the document's beginning, or all of it when
/// `complete`. A document type declaration is refused; nothing outside the bytes is read.
XmlMessage FindXmlMessage(std::string_view bytes, bool complete);

} // namespace host
