#include "tests/fuzz/order_counts.h"

#include "tests/fuzz/target.h"

#include <algorithm>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <memory>
#include <vector>

namespace fuzz
{

namespace
{

// Behind a byte order mark and up to 0x1A.
std::string_view TextOf(std::string_view bytes)
{
    bytes.remove_prefix(bytes.starts_with("\xEF\xBB\xBF") ? 3U : 0U);
    return bytes.substr(0, bytes.find('\x1A'));
}

std::vector<std::string> Lines(std::string_view bytes)
{
    std::vector<std::string> lines(1);
    for (const char byte : bytes)
    {
        if (byte == '\n')
        {
            lines.emplace_back();
            continue;
        }
        lines.back() += byte;
    }
    for (std::string& line : lines)
    {
        if (line.ends_with('\r'))
        {
            line.pop_back();
        }
    }
    return lines;
}

std::vector<std::string> Records(std::string_view bytes, std::size_t length)
{
    std::vector<std::string> records;
    std::string record;
    for (const char byte : bytes)
    {
        if (record.empty() && (byte == '\r' || byte == '\n'))
        {
            continue;
        }
        record += byte;
        if (record.size() == length)
        {
            records.push_back(record);
            record.clear();
        }
    }
    records.push_back(record);
    return records;
}

// A line is one record, or several where one begins at the end of another and is no mere rest.
std::vector<std::string> RecordsOfLines(std::string_view bytes, std::size_t length,
                                        const RecordCodes& codes)
{
    std::vector<std::string> records;
    for (std::string line : Lines(bytes))
    {
        while (line.size() > length + length / 2U &&
               std::find(codes.begin(), codes.end(), line.substr(length, 2)) != codes.end())
        {
            records.push_back(line.substr(0, length));
            line.erase(0, length);
        }
        records.push_back(line);
    }
    return records;
}

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)>;

bool IsElement(const xmlNode* node)
{
    return node->type == XML_ELEMENT_NODE;
}

std::string NameOf(const xmlNode* node)
{
    return reinterpret_cast<const char*>(node->name);
}

std::uint64_t CountChildren(const xmlNode* parent, const std::string& group,
                            const std::string& order)
{
    std::uint64_t count = 0;
    for (const xmlNode* node = parent->children; node != nullptr; node = node->next)
    {
        if (IsElement(node) && !group.empty() && NameOf(node) == group)
        {
            count += CountChildren(node, "", order);
        }
        else if (IsElement(node) && group.empty() && NameOf(node) == order)
        {
            ++count;
        }
    }
    return count;
}

// Message elements are not looked for within one another.
std::uint64_t CountInMessages(const xmlNode* node, const std::string& message,
                              const std::string& oldMessage, const std::string& order)
{
    std::uint64_t count = 0;
    for (; node != nullptr; node = node->next)
    {
        if (!IsElement(node))
        {
            continue;
        }
        const bool found = NameOf(node) == message || NameOf(node).starts_with(oldMessage);
        count += found ? CountChildren(node, "PmtInf", order)
                       : CountInMessages(node->children, message, oldMessage, order);
    }
    return count;
}

} // namespace

std::uint64_t CountRecords(std::string_view bytes, std::size_t length, const RecordCodes& codes)
{
    const std::string_view text = TextOf(bytes);
    const bool separated =
        text.substr(0, length + length / 2U + 2U).find('\n') != std::string_view::npos;
    const std::vector<std::string> records =
        separated ? RecordsOfLines(text, length, codes) : Records(text, length);
    return static_cast<std::uint64_t>(std::count_if(records.begin(), records.end(),
                                                    [&](const std::string& record)
                                                    { return record.starts_with(codes.front()); }));
}

std::uint64_t CountMtOrders(std::string_view bytes)
{
    std::uint64_t count = 0;
    bool inOrder = false;
    for (std::string line : Lines(TextOf(bytes)))
    {
        if (const std::size_t block = line.find("{4:"); block != std::string::npos)
        {
            line.erase(0, block + 3U);
        }
        const bool opens = line.starts_with(":21:") || (!inOrder && line.starts_with(":32B:"));
        count += opens ? 1U : 0U;
        inOrder = (inOrder || opens) && !line.starts_with(":20:");
    }
    return count;
}

std::uint64_t CountPainOrders(std::string_view bytes, const std::string& message,
                              const std::string& oldMessage, const std::string& order)
{
    const Document document(
        xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    Require(document != nullptr, "a document that cannot be read was converted");
    return CountInMessages(xmlDocGetRootElement(document.get()), message, oldMessage, order);
}

} // namespace fuzz
