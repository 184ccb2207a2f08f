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

void PutNarrow(CTString& value, std::u16string_view units)
{
    Scratch<char> ascii(units.size());
    if (support::TryAsciiFromUtf16(units, ascii.Data()))
    {
        Put(value, ascii.Data(), units.size());
        return;
    }
    const std::string narrow = support::NarrowFromWide(support::WideFromUtf16(units));
    Put(value, narrow.data(), narrow.size());
}

void PutWide(TSimpleStringW& value, std::u16string_view units)
{
    Scratch<wchar_t> wide(units.size());
    Put(value, wide.Data(), support::WideFromUtf16(units, wide.Data()));
}

} // namespace

// Without clearing memory that a conversion writes before it is read.
// cppcheck-suppress uninitMemberVar
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
    PutNarrow(value, RequireOpen("GetFieldValue").Value(name));
}

void CRecordset::GetFieldValue(const char* name, TSimpleStringW& value) const
{
    PutWide(value, RequireOpen("GetFieldValue").Value(name));
}

const char* CRecordset::NarrowText(std::size_t position)
{
    const std::u16string_view units = RequireOpen("GetFieldValue").Value(position);
    if (units.size() < kUsualLength && support::TryAsciiFromUtf16(units, m_narrow))
    {
        m_narrow[units.size()] = '\0';
        return m_narrow;
    }
    PutNarrow(m_otherNarrow, units);
    return m_otherNarrow.SafeGetString();
}

const wchar_t* CRecordset::WideText(std::size_t position)
{
    const std::u16string_view units = RequireOpen("GetFieldValue").Value(position);
    if (units.size() < kUsualLength)
    {
        m_wide[support::WideFromUtf16(units, m_wide)] = L'\0';
        return m_wide;
    }
    PutWide(m_otherWide, units);
    return m_otherWide.SafeGetString();
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
