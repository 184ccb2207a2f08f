#pragma once

#include "engine/order_file.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace engine
{

/// Where a document is being read.
class XmlPosition
{
public:
    virtual ~XmlPosition() = default;
    virtual int Line() const = 0;
};

/// Receives what an XML document holds, in document order. Names are local names that end with a
/// NUL; within one document the same name has the same address, and no two names share one. Texts
/// are UTF-8.
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

    virtual void StartElement(const char* name, const Attributes& attributes) = 0;
    /// Part of a text or CDATA section; one text may come in several parts, with elements between
    /// them. Gives back how much text is kept, so that no document makes it grow without end.
    virtual std::size_t Characters(std::string_view text) = 0;
    virtual void EndElement() = 0;

    /// Tells the handler whom to ask for the line; null when nothing is read.
    void ReadFrom(const XmlPosition* position) noexcept { m_position = position; }

protected:
    /// Line of the document, from 1; 0 when none is read.
    std::uint64_t Line() const
    {
        return m_position == nullptr ? 0U : static_cast<std::uint64_t>(m_position->Line());
    }

private:
    const XmlPosition* m_position = nullptr;
};

/// Parses the file in constant memory. Document type declarations, entities other than XML's own,
/// nesting deeper than 256, texts longer than 1 MiB, markup or CDATA longer than 256 KiB, more than
/// 256 attributes of an element and more than 10000 different names are refused; nothing outside
/// the file is read. Malformed or refused documents raise engine::Failure with line and column.
void ParseXml(OrderFile& file, XmlHandler& handler);

} // namespace engine
