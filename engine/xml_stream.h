#pragma once

#include "engine/order_file.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace engine
{

/// Receives what an XML document holds, in document order. Names are local names; texts UTF-8.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    /// Attributes are asked for through `attributes`, valid during the call.
    class Attributes
    {
    public:
        virtual ~Attributes() = default;
        /// Value as it stands in the document; empty when there is none. One with a prefix is
        /// another attribute.
        virtual std::string_view Find(std::string_view name) const = 0;
    };

    virtual void StartElement(std::string_view name, const Attributes& attributes) = 0;
    /// Part of a text or CDATA section; one text may come in several parts, with elements between
    /// them. Gives back how much text is kept, so that no document makes it grow without end.
    virtual std::size_t Characters(std::string_view text) = 0;
    virtual void EndElement() = 0;

    /// Line of the document, from 1, set before each call.
    void SetLine(std::uint64_t line) noexcept { m_line = line; }

protected:
    std::uint64_t m_line = 0;
};

/// Parses the file in constant memory. Document type declarations, entities other than XML's own,
/// nesting deeper than 256, texts longer than 1 MiB, markup or CDATA longer than 256 KiB, more than
/// 256 attributes of an element and more than 10000 different names are refused; nothing outside
/// the file is read. Malformed or refused documents raise engine::Failure with line and column.
void ParseXml(OrderFile& file, XmlHandler& handler);

} // namespace engine
