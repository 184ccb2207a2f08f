#include "services/event_statement.h"

#include "support/codepage.h"
#include "support/format.h"

#include <cstddef>

namespace services
{

namespace
{

// In UTF-16 units, as the product with the narrowest meaning of a length counts them.
constexpr std::size_t kSourceLength = 64;
constexpr std::size_t kReferenceLength = 1024;
constexpr std::size_t kAuxLength = 1024;
constexpr std::size_t kAttachKindLength = 10;
constexpr std::size_t kAttachPathLength = 260;
constexpr std::size_t kWhole = static_cast<std::size_t>(-1);

/// The start of a text that fits; half a character beyond 16 bits is not left behind.
std::wstring_view CutToColumn(std::wstring_view text, std::size_t units)
{
    // Two for each character at most.
    if (text.size() <= units / 2)
    {
        return text;
    }
    std::size_t used = 0;
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const auto character = static_cast<char32_t>(text[index]);
        used += character > 0xFFFF ? 2 : 1;
        if (used > units)
        {
            return support::CutWide(text, index);
        }
    }
    return text;
}

std::wstring Literal(const std::optional<std::wstring>& text, std::size_t units)
{
    if (!text)
    {
        return L"NULL";
    }
    std::wstring_view rest = CutToColumn(*text, units);
    std::wstring literal;
    literal.reserve(rest.size() + 3);
    literal += L"N'";
    for (std::size_t quote = rest.find(L'\''); quote != std::wstring_view::npos;
         quote = rest.find(L'\''))
    {
        literal.append(rest.substr(0, quote)).append(L"''");
        rest.remove_prefix(quote + 1);
    }
    return literal.append(rest).append(L"'");
}

} // namespace

std::wstring EventInsertStatement(const EventRecord& event)
{
    const std::wstring source = Literal(event.source, kSourceLength);
    const std::wstring reference = Literal(event.reference, kReferenceLength);
    const std::wstring aux1 = Literal(event.aux1, kAuxLength);
    const std::wstring aux2 = Literal(event.aux2, kAuxLength);
    const std::wstring text = Literal(event.text, kWhole);
    const std::wstring attachKind = Literal(event.attachKind, kAttachKindLength);
    const std::wstring attachPath = Literal(event.attachPath, kAttachPathLength);
    return support::FormatW(
        L"INSERT INTO EVT_JOURNAL (EVENTKEY,DATETIME,SOURCE,LEVEL,REFERENCE,AUX1,AUX2,TEXT,"
        L"ATTACHKIND,ATTACHPATH) VALUES ('%S','%S',%s,%u,%s,%s,%s,%s,%s,%s)",
        event.key.c_str(), event.dateTime.c_str(), source.c_str(),
        static_cast<unsigned int>(event.level), reference.c_str(), aux1.c_str(), aux2.c_str(),
        text.c_str(), attachKind.c_str(), attachPath.c_str());
}

} // namespace services
