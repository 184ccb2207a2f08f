#pragma once

#include "database/connection.h"
#include "database/query_shape.h"
#include "database/row_layout.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace database
{

/// A running query and its current row, each value as UTF-16. Its end ends the query, and with it
/// the locks that the reading holds.
class Cursor
{
public:
    /// Runs the query and stands on the first row. Without a layout the driver is asked for the
    /// columns.
    Cursor(std::shared_ptr<Connection> connection, std::wstring_view statement,
           const RowLayout* layout);
    ~Cursor();
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    bool IsAtEnd() const noexcept { return m_atEnd; }
    void MoveNext();

    /// Value of the current row, valid until the next move.
    std::u16string_view Value(const char* name);
    std::u16string_view Value(std::size_t position);
    bool IsNull(const char* name);

    std::size_t ColumnCount() const noexcept { return m_shape->columns.size(); }
    const char* ColumnName(std::size_t index);

private:
    void ColumnsFromLayout(const RowLayout& layout);
    void ColumnsFromDriver();
    void AddColumn(std::string name, std::size_t length);
    void Bind();
    void Fetch();
    void TakeValue(std::size_t index);
    /// Appends the rest of a value, from where the driver stands, to longValue.
    void ReadOn(std::size_t index);
    /// The next piece of a value: units read, and whether it was the last.
    std::size_t ReadPiece(std::size_t index, char16_t* piece, std::size_t size, bool& last);
    std::u16string_view ValueIn(const Column& column) const noexcept;
    void RequireRow(const char* operation);
    const Column& Find(const char* name, const char* operation);
    void Check(SQLRETURN returnCode, std::string_view operation);
    Attempt During(std::string_view operation) const { return {operation, m_shape->text}; }

    std::shared_ptr<Connection> m_connection;
    std::unique_ptr<QueryShape> m_shape;
    bool m_atEnd = false;
};

} // namespace database
