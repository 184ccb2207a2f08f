#include "database/crecordset.h"

#include "database/cdatabase.h"
#include "database/cursor.h"
#include "port/cancellation.h"
#include "support/codepage.h"
#include "support/utf16.h"

#include <string>

namespace
{

// As long as any column of the tables but those of history and journal: such values need no memory
// on their way.
constexpr std::size_t kUsualLength = 256;

/// What a conversion is written into: memory of its own for a usual length, else from the heap.
template <typename Character>
class Scratch
{
public:
    // Without clearing memory that the conversion writes before it is read.
    // cppcheck-suppress uninitMemberVar
    explicit Scratch(std::size_t length)
    {
        if (length > kUsualLength)
        {
            m_long.resize(length);
            m_data = m_long.data();
        }
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    Character* Data() noexcept { return m_data; }

private:
    Character m_usual[kUsualLength];
    std::basic_string<Character> m_long;
    Character* m_data = m_usual;
};

/// Puts a text into a value, whose memory is used again.
template <typename Value, typename Character>
void Put(Value& value, const Character* text, std::size_t length)
{
    value.Empty();
    value.Append(text, length);
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
    const std::u16string_view units = RequireOpen("GetFieldValue").Value(name);
    Scratch<char> ascii(units.size());
    if (support::TryAsciiFromUtf16(units, ascii.Data()))
    {
        Put(value, ascii.Data(), units.size());
        return;
    }
    const std::string narrow = support::NarrowFromWide(support::WideFromUtf16(units));
    Put(value, narrow.data(), narrow.size());
}

void CRecordset::GetFieldValue(const char* name, TSimpleStringW& value) const
{
    const std::u16string_view units = RequireOpen("GetFieldValue").Value(name);
    Scratch<wchar_t> wide(units.size());
    Put(value, wide.Data(), support::WideFromUtf16(units, wide.Data()));
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
