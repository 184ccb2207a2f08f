#include "host/format_recognition.h"

#include "host/refusal.h"
#include "host/swift_message.h"
#include "host/text.h"
#include "host/xml_message.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace host
{

namespace
{

// An order file shows its format within its first lines, comments and an envelope's header
// included. The bound also keeps a hostile file from costing more than a glance.
constexpr std::size_t kLongestOpening = std::size_t{256} * 1024;

constexpr std::string_view kTransferRecord = "03";
constexpr std::string_view kOrderRecord = "06";
constexpr std::string_view kInternational = "PI";
constexpr std::array<std::string_view, 9> kDomesticCodes = {"02", "22", "27", "28", "29",
                                                            "76", "08", "85", "60"};
constexpr std::size_t kDomesticLength = 160;
constexpr std::size_t kInternationalLength = 320;

enum Format : std::size_t
{
    kPain001,
    kPain008,
    kCfonb160,
    kCfonb320,
    kMt101,
};

/// What an opening shows: a format, or why it shows none.
struct Glance
{
    std::optional<Format> format;
    std::string problem;
};

std::string ReadOpening(const std::string& path)
{
    port::File file;
    std::string bytes(kLongestOpening, '\0');
    const std::int64_t size = file.Open(path.c_str(), port::OpenMode::Read)
                                  ? file.Read(bytes.data(), bytes.size())
                                  : std::int64_t{-1};
    if (size < 0)
    {
        throw Refusal(kCouldNotRun, "order file " + Quoted(support::Utf8FromNarrow(path)) +
                                        " cannot be read (error " + std::to_string(GetLastError()) +
                                        "). Give this user the right to read it.");
    }
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

// Every format may stand behind it.
std::string_view WithoutUtf8Mark(std::string_view bytes)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    bytes.remove_prefix(bytes.starts_with(kMark) ? kMark.size() : 0U);
    return bytes;
}

// The first character says it: behind a mark or blanks, and between the zero bytes that UTF-16 and
// UTF-32 put round it. No other format knows UTF-16.
bool IsXml(std::string_view bytes)
{
    constexpr std::string_view kBlanks(" \t\r\n\0", 5);
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"))
    {
        return true;
    }
    bytes = WithoutUtf8Mark(bytes);
    const std::size_t first = bytes.find_first_not_of(kBlanks);
    return first != std::string_view::npos && bytes[first] == '<';
}

Glance GlanceAtXml(std::string_view bytes)
{
    const XmlMessage message = FindXmlMessage(bytes, bytes.size() < kLongestOpening);
    switch (message.kind)
    {
    case XmlMessage::Kind::Pain001:
        return {kPain001, {}};
    case XmlMessage::Kind::Pain008:
        return {kPain008, {}};
    default:
        return {std::nullopt, message.problem};
    }
}

bool IsDomestic(std::string_view operation)
{
    return std::find(kDomesticCodes.begin(), kDomesticCodes.end(), operation) !=
           kDomesticCodes.end();
}

// An operation that is not known, carried on from the header to the first order, is a wrong one of
// the format all the same; the conversion tells it.
bool NextRecordHasOperation(std::string_view header, std::string_view operation)
{
    header.remove_prefix(std::min({header.find_first_of("\r\n"), kDomesticLength, header.size()}));
    header.remove_prefix(std::min(header.find_first_not_of("\r\n"), header.size()));
    return header.starts_with(kOrderRecord) && header.substr(kOrderRecord.size(), 2) == operation;
}

// Blank records and line ends may stand before the first one; what stands before it on its own line
// shifts every zone, unless it is whole blank records.
Glance GlanceAtRecords(std::string_view bytes)
{
    const std::size_t start = std::min(bytes.find_first_not_of(" \r\n"), bytes.size());
    const std::size_t lineEnd = bytes.substr(0, start).find_last_of("\r\n");
    const std::size_t blanks = start - (lineEnd == std::string_view::npos ? 0U : lineEnd + 1U);
    const std::string_view record = bytes.substr(start);
    if (!record.starts_with(kTransferRecord) || record.size() < 4)
    {
        return {};
    }
    const std::string_view operation = record.substr(2, 2);
    if (operation == kInternational && blanks % kInternationalLength == 0)
    {
        return {kCfonb320, {}};
    }
    if (blanks % kDomesticLength == 0 &&
        (IsDomestic(operation) || NextRecordHasOperation(record, operation)))
    {
        return {kCfonb160, {}};
    }
    return {};
}

Glance GlanceAtSwift(std::string_view bytes)
{
    const std::string type = SwiftMessageType(bytes);
    if (type == kSwiftMt101)
    {
        return {kMt101, {}};
    }
    return {std::nullopt, type.empty() ? std::string() : "it is a SWIFT message of type " + type};
}

Glance GlanceAt(std::string_view bytes)
{
    if (bytes.empty())
    {
        return {std::nullopt, "it is empty"};
    }
    if (IsXml(bytes))
    {
        return GlanceAtXml(bytes);
    }
    // 0x1A ends a file of these formats, whatever stands behind it.
    const std::string_view text = WithoutUtf8Mark(bytes.substr(0, bytes.find('\x1A')));
    const Glance records = GlanceAtRecords(text);
    return records.format ? records : GlanceAtSwift(text);
}

} // namespace

const std::vector<OrderFormat>& AllOrderFormats()
{
    static const std::vector<OrderFormat> formats = {{"ISO20022", "pain.001"},
                                                     {"ISO20022", "pain.008"},
                                                     {"CFONB", "160"},
                                                     {"CFONB", "320"},
                                                     {"SWIFT", "MT101"}};
    return formats;
}

OrderFormat RecogniseOrderFormat(const std::string& path)
{
    const Glance glance = GlanceAt(ReadOpening(path));
    if (glance.format)
    {
        return AllOrderFormats()[*glance.format];
    }
    throw Refusal(kCouldNotRun,
                  "order file " + Quoted(support::Utf8FromNarrow(path)) +
                      " shows no order format: " +
                      (glance.problem.empty()
                           ? std::string("it begins neither as XML, nor with a CFONB header record "
                                         "(03 and an operation code), nor as a SWIFT MT101")
                           : glance.problem) +
                      ". Give the order file itself, or name its format, as in --format "
                      "ISO20022/pain.001 (known: " +
                      KnownOrderFormats() + ").");
}

} // namespace host
