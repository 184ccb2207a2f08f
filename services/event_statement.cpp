#include "services/event_statement.h"

#include "support/append_text.h"
#include "support/codepage.h"

#include <cstddef>
#include <cstdint>

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

// Room for a usual statement beside its text.
constexpr std::size_t kBesideTheText = 512;

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

void AppendLiteral(std::wstring& statement, const std::optional<std::wstring>& text,
                   std::size_t units)
{
    if (!text)
    {
        support::AppendWords(statement, L"NULL");
        return;
    }
    std::wstring_view rest = CutToColumn(*text, units);
    support::AppendWords(statement, L"N'");
    for (std::size_t quote = rest.find(L'\''); quote != std::wstring_view::npos;
         quote = rest.find(L'\''))
    {
        statement.append(rest.substr(0, quote)).append(L"''");
        rest.remove_prefix(quote + 1);
    }
    statement.append(rest).append(L"'");
}

} // namespace

std::wstring EventInsertStatement(const EventRecord& event)
{
    const auto literal =
        [](std::wstring& statement, const std::optional<std::wstring>& text, std::size_t units)
    {
        support::AppendWords(statement, L",");
        AppendLiteral(statement, text, units);
    };
    std::wstring statement;
    statement.reserve(kBesideTheText + (event.text ? event.text->size() : 0));
    support::AppendWords(
        statement,
        L"INSERT INTO EVT_JOURNAL (EVENTKEY,DATETIME,SOURCE,LEVEL,REFERENCE,AUX1,AUX2,TEXT,"
        L"ATTACHKIND,ATTACHPATH) VALUES ('");
    support::AppendCut(statement, event.key.c_str(), support::kWhole);
    support::AppendWords(statement, L"','");
    support::AppendCut(statement, event.dateTime.c_str(), support::kWhole);
    support::AppendWords(statement, L"'");
    literal(statement, event.source, kSourceLength);
    support::AppendWords(statement, L",");
    support::AppendDecimal(statement, std::uint32_t{event.level});
    literal(statement, event.reference, kReferenceLength);
    literal(statement, event.aux1, kAuxLength);
    literal(statement, event.aux2, kAuxLength);
    literal(statement, event.text, kWhole);
    literal(statement, event.attachKind, kAttachKindLength);
    literal(statement, event.attachPath, kAttachPathLength);
    support::AppendWords(statement, L")");
    return statement;
}

} // namespace services
