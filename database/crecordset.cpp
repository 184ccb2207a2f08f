#include "database/crecordset.h"

#include "database/cdatabase.h"
#include "database/cursor.h"
#include "port/cancellation.h"
#include "support/codepage.h"

#include <algorithm>
#include <string>

namespace
{

/// Most values are plain ASCII: numbers, identifiers, most names.
bool IsAscii(std::u16string_view text) noexcept
{
    return std::all_of(text.begin(), text.end(), [](char16_t each) { return each < 0x80; });
}

std::string NarrowFromUtf16(std::u16string_view text)
{
    if (!IsAscii(text))
    {
        return support::NarrowFromWide(support::WideFromUtf16(text));
    }
    std::string narrow(text.size(), '\0');
    std::transform(text.begin(), text.end(), narrow.begin(),
                   [](char16_t each) { return static_cast<char>(each); });
    return narrow;
}

} // namespace

CRecordset::CRecordset(CDatabase& database) : m_database(database) {}

CRecordset::~CRecordset()
{
    const port::CancellationHold hold;
    m_cursor.reset();
}

void CRecordset::OpenW(int, const wchar_t* statement, std::uint32_t,
                       const database::RowLayout* layout)
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    m_cursor.reset();
    m_cursor = std::make_unique<database::Cursor>(m_database.GetConnection().shared_from_this(),
                                                  statement == nullptr ? L"" : statement, layout);
}

bool CRecordset::IsEOF() const noexcept
{
    return m_cursor == nullptr || m_cursor->IsAtEnd();
}

void CRecordset::MoveNext()
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    RequireOpen("MoveNext").MoveNext();
}

void CRecordset::GetFieldValue(const char* name, CTString& value) const
{
    const std::string narrow = NarrowFromUtf16(RequireOpen("GetFieldValue").Value(name));
    value = TSimpleString(narrow.data(), narrow.size());
}

void CRecordset::GetFieldValue(const char* name, TSimpleStringW& value) const
{
    const std::wstring wide = support::WideFromUtf16(RequireOpen("GetFieldValue").Value(name));
    value = TSimpleStringW(wide.data(), wide.size());
}

bool CRecordset::IsFieldNull(const char* name) const
{
    return RequireOpen("IsFieldNull").IsNull(name);
}

std::size_t CRecordset::GetFieldCount() const noexcept
{
    return m_cursor == nullptr ? 0 : m_cursor->ColumnCount();
}

const char* CRecordset::GetFieldName(std::size_t index) const
{
    return RequireOpen("GetFieldName").ColumnName(index);
}

void CRecordset::Close()
{
    const port::CancellationHold hold;
    m_cursor.reset();
}

database::Cursor& CRecordset::RequireOpen(const char* operation) const
{
    if (m_cursor == nullptr)
    {
        database::RaiseRefusal("24000", "The record set is not open.", {operation, L""});
    }
    return *m_cursor;
}
