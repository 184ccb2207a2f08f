#pragma once

#include "database/ctstring.h"
#include "database/row_layout.h"
#include "support/tsimplestringw.h"

#include <cstddef>
#include <cstdint>
#include <memory>

class CDatabase;

namespace database
{
class Cursor;
} // namespace database

/// The rows of one query, forward only. Rows are fetched whole and served by column name without
/// regard to ASCII case; NULL reads as empty text. Every member raises CDBException*.
class CRecordset
{
public:
    static constexpr int kForwardOnly = 2;

    /// `database` must be open and outlive the record set.
    explicit CRecordset(CDatabase& database);
    ~CRecordset();
    CRecordset(const CRecordset&) = delete;
    CRecordset& operator=(const CRecordset&) = delete;

    /// Runs the query and stands on the first row. `openType` is kForwardOnly, `options` 0. An open
    /// record set is closed first. `layout`, when given, is a constant of the program: the
    /// connection keeps what was bound by it for the next query.
    void OpenW(int openType, const wchar_t* statement, std::uint32_t options,
               const database::RowLayout* layout = nullptr);

    bool IsEOF() const noexcept;
    void MoveNext();

    /// The current row's value of a column. An unknown name raises.
    void GetFieldValue(const char* name, CTString& value) const;
    void GetFieldValue(const char* name, TSimpleStringW& value) const;
    /// The same by the column's position in the layout that the query was opened with, from 0.
    /// Valid until the next value of the same kind is read: usual ones need no memory of their own.
    const char* NarrowText(std::size_t position);
    const wchar_t* WideText(std::size_t position);
    /// Whether the current row's value is NULL.
    bool IsFieldNull(const char* name) const;

    /// Columns of the open query, for display: their number and names.
    std::size_t GetFieldCount() const noexcept;
    const char* GetFieldName(std::size_t index) const;

    void Close();

private:
    database::Cursor& RequireOpen(const char* operation) const;

    // As long as any column of the tables but those of history and journal.
    static constexpr std::size_t kUsualLength = 256;

    CDatabase& m_database;
    std::unique_ptr<database::Cursor> m_cursor;
    // What NarrowText and WideText give; longer or stranger values stand behind.
    char m_narrow[kUsualLength];
    wchar_t m_wide[kUsualLength];
    CTString m_otherNarrow;
    TSimpleStringW m_otherWide;
};
