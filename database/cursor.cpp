#include "database/cursor.h"

#include "database/odbc_text.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/utf16.h"

#include <algorithm>
#include <utility>

namespace database
{

namespace
{

// Without a layout: room for every number and date, and for most texts; longer ones are read again.
constexpr std::size_t kLeastLength = 64;
constexpr std::size_t kMostLength = 512;

// A long value comes in pieces of at most 2 MiB: the driver's word alone reserves no more.
constexpr std::size_t kFirstPieceUnits = 4096;
constexpr std::size_t kMostPieceUnits = std::size_t{1} << 20U;
// 1 GiB. A driver that goes on beyond it repeats itself.
constexpr std::size_t kMostValueUnits = std::size_t{1} << 29U;

constexpr const char* kOpen = "OpenW";
constexpr const char* kMove = "MoveNext";
constexpr const char* kRead = "GetFieldValue";

SQLLEN ByteCount(std::size_t units) noexcept
{
    return static_cast<SQLLEN>(units * sizeof(char16_t));
}

SQLUSMALLINT OdbcColumn(std::size_t index) noexcept
{
    return static_cast<SQLUSMALLINT>(index + 1);
}

} // namespace

Cursor::Cursor(std::shared_ptr<Connection> connection, std::wstring_view statement,
               const RowLayout* layout)
    : m_connection(std::move(connection)), m_shape(m_connection->TakeShape(layout))
{
    if (m_shape == nullptr)
    {
        m_shape = std::make_unique<QueryShape>();
        m_shape->statement = m_connection->NewStatement(kOpen);
        if (layout != nullptr)
        {
            ColumnsFromLayout(*layout);
            Bind();
        }
    }
    m_shape->text = statement;
    // A query of fewer columns than its layout must not show what the one before it has read.
    for (Column& each : m_shape->columns)
    {
        each.indicator = kNotGiven;
    }
    m_connection->Run(m_shape->statement, statement, kOpen);
    if (layout == nullptr)
    {
        ColumnsFromDriver();
        Bind();
    }
    Fetch();
}

Cursor::~Cursor()
{
    m_connection->PutShape(std::move(m_shape));
}

void Cursor::ColumnsFromLayout(const RowLayout& layout)
{
    m_shape->layout = &layout;
    m_shape->columns.reserve(layout.count);
    for (std::size_t index = 0; index < layout.count; ++index)
    {
        AddColumn(layout.columns[index].name, layout.columns[index].length);
    }
}

void Cursor::ColumnsFromDriver()
{
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(m_shape->statement.Get(), &count), kOpen);
    if (count <= 0)
    {
        m_connection->Refuse("07005", "The statement gives no rows.", During(kOpen));
    }
    m_shape->columns.reserve(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < static_cast<std::size_t>(count); ++index)
    {
        char16_t name[256] = {};
        SQLSMALLINT nameLength = 0;
        SQLSMALLINT type = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        SQLULEN size = 0;
        Check(SQLDescribeColW(m_shape->statement.Get(), OdbcColumn(index), OdbcUnits(name),
                              static_cast<SQLSMALLINT>(std::size(name)), &nameLength, &type, &size,
                              &digits, &nullable),
              kOpen);
        const std::size_t told = nameLength < 0 ? 0 : static_cast<std::size_t>(nameLength);
        const std::u16string_view known(name, std::min(told, std::size(name) - 1));
        AddColumn(support::NarrowFromWide(support::WideFromUtf16(known)),
                  std::clamp<std::size_t>(size, kLeastLength, kMostLength));
    }
}

void Cursor::AddColumn(std::string name, std::size_t length)
{
    std::vector<Column>& columns = m_shape->columns;
    const std::size_t offset =
        columns.empty() ? 0 : columns.back().offset + columns.back().capacity;
    columns.push_back({std::move(name), offset, length + 1, kNotGiven, false, {}});
}

void Cursor::Bind()
{
    m_shape->buffer.resize(m_shape->columns.back().offset + m_shape->columns.back().capacity);
    if (!m_connection->BindsColumns())
    {
        return;
    }
    for (std::size_t index = 0; index < m_shape->columns.size(); ++index)
    {
        Column& column = m_shape->columns[index];
        Check(SQLBindCol(m_shape->statement.Get(), OdbcColumn(index), SQL_C_WCHAR,
                         m_shape->buffer.data() + column.offset, ByteCount(column.capacity),
                         &column.indicator),
              kOpen);
    }
}

void Cursor::MoveNext()
{
    if (m_atEnd)
    {
        m_connection->Refuse("24000", "There is no row behind the last one.", During(kMove));
    }
    Fetch();
}

void Cursor::Fetch()
{
    const SQLRETURN result = SQLFetch(m_shape->statement.Get());
    if (result == SQL_NO_DATA)
    {
        m_atEnd = true;
        return;
    }
    // A value cut at its buffer is told as a success with information.
    Check(result, kMove);
    for (std::size_t index = 0; index < m_shape->columns.size(); ++index)
    {
        TakeValue(index);
    }
}

void Cursor::TakeValue(std::size_t index)
{
    Column& column = m_shape->columns[index];
    column.isLong = false;
    bool last = true;
    std::size_t units = 0;
    if (!m_connection->BindsColumns())
    {
        column.indicator = 0;
        units = ReadPiece(index, m_shape->buffer.data() + column.offset, column.capacity, last);
    }
    if (!last)
    {
        column.longValue.assign(m_shape->buffer, column.offset, units);
        ReadOn(index);
    }
    else if (column.indicator == SQL_NO_TOTAL || column.indicator > ByteCount(column.capacity - 1))
    {
        column.longValue.clear();
        ReadOn(index);
        if (column.longValue.empty())
        {
            m_connection->Refuse("HY090", "The driver does not give a long value again.",
                                 During(kMove));
        }
    }
    else if (column.indicator == kNotGiven)
    {
        m_connection->Refuse("07009", "The query gives no value for column " + column.name + ".",
                             During(kMove));
    }
    else if (column.indicator < 0 && column.indicator != SQL_NULL_DATA)
    {
        m_connection->Refuse("HY090", "The driver gives a value an impossible length.",
                             During(kMove));
    }
}

void Cursor::ReadOn(std::size_t index)
{
    Column& column = m_shape->columns[index];
    column.isLong = true;
    std::u16string piece;
    bool last = false;
    while (!last)
    {
        const std::size_t expected =
            column.indicator > 0 ? static_cast<std::size_t>(column.indicator) / sizeof(char16_t) + 1
                                 : kFirstPieceUnits;
        piece.resize(std::clamp(expected, kFirstPieceUnits, kMostPieceUnits));
        const std::size_t units = ReadPiece(index, piece.data(), piece.size(), last);
        column.longValue.append(piece, 0, units);
        if ((units == 0 && !last) || column.longValue.size() > kMostValueUnits)
        {
            m_connection->Refuse("HY090", "The driver never ends a value.", During(kMove));
        }
    }
}

std::size_t Cursor::ReadPiece(std::size_t index, char16_t* piece, std::size_t size, bool& last)
{
    const std::size_t room = size - 1;
    SQLLEN indicator = SQL_NULL_DATA;
    const SQLRETURN result = SQLGetData(m_shape->statement.Get(), OdbcColumn(index), SQL_C_WCHAR,
                                        OdbcUnits(piece), ByteCount(size), &indicator);
    last = result == SQL_NO_DATA; // the piece before was full by chance
    if (last)
    {
        return 0;
    }
    Check(result, kMove);
    m_shape->columns[index].indicator = indicator;
    last = indicator == SQL_NULL_DATA || (indicator >= 0 && indicator <= ByteCount(room));
    if (last)
    {
        return indicator < 0 ? 0 : static_cast<std::size_t>(indicator) / sizeof(char16_t);
    }
    if (result == SQL_SUCCESS)
    {
        // It fits, and the driver did not count it.
        last = true;
        const std::size_t units = std::u16string_view(piece, room).find(u'\0');
        m_shape->columns[index].indicator = ByteCount(std::min(units, room));
        return std::min(units, room);
    }
    // The piece is full, or one unit short of it where a driver keeps pairs whole.
    return piece[room - 1] == u'\0' ? room - 1 : room;
}

std::u16string_view Cursor::Value(const char* name)
{
    return ValueIn(Find(name, kRead));
}

std::u16string_view Cursor::Value(std::size_t position)
{
    RequireRow(kRead);
    if (position >= m_shape->columns.size())
    {
        m_connection->Refuse("07009", "The query has no column of this number.", During(kRead));
    }
    return ValueIn(m_shape->columns[position]);
}

std::u16string_view Cursor::ValueIn(const Column& column) const noexcept
{
    if (column.indicator == SQL_NULL_DATA)
    {
        return {};
    }
    if (column.isLong)
    {
        return column.longValue;
    }
    return std::u16string_view(m_shape->buffer)
        .substr(column.offset, static_cast<std::size_t>(column.indicator) / sizeof(char16_t));
}

bool Cursor::IsNull(const char* name)
{
    return Find(name, "IsFieldNull").indicator == SQL_NULL_DATA;
}

void Cursor::RequireRow(const char* operation)
{
    if (m_atEnd)
    {
        m_connection->Refuse("24000", "There is no current row.", During(operation));
    }
}

const Column& Cursor::Find(const char* name, const char* operation)
{
    RequireRow(operation);
    const std::string_view wanted = name;
    const std::vector<Column>& columns = m_shape->columns;
    const auto found =
        std::find_if(columns.begin(), columns.end(),
                     [wanted](const Column& each)
                     {
                         return each.name.size() == wanted.size() &&
                                support::EqualIgnoringAsciiCase(each.name.c_str(), wanted.data());
                     });
    if (found == columns.end())
    {
        m_connection->Refuse("42S22", "The query has no column " + std::string(wanted) + ".",
                             During(operation));
    }
    return *found;
}

const char* Cursor::ColumnName(std::size_t index)
{
    if (index >= m_shape->columns.size())
    {
        m_connection->Refuse("07009", "The query has no column of this number.",
                             During("GetFieldName"));
    }
    return m_shape->columns[index].name.c_str();
}

void Cursor::Check(SQLRETURN returnCode, std::string_view operation)
{
    if (!SQL_SUCCEEDED(returnCode))
    {
        m_connection->RaiseFrom(returnCode, m_shape->statement, During(operation));
    }
}

} // namespace database
