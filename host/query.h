#pragma once

#include "host/connection.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class CDatabase;

namespace host
{

/// One row for display: values in UTF-8 by column name; NULL is empty.
using QueryRow = std::map<std::string, std::string>;

/// A whole number of a row; 0 where it has none.
std::int64_t NumberIn(const QueryRow& row, const char* column);

/// The conditions of a query, joined by AND. Values are UTF-8 and enter as literals with their
/// quotes doubled.
class Conditions
{
public:
    void Equal(const std::string& column, const std::string& value);
    void AtLeast(const std::string& column, const std::string& value);
    void AtMost(const std::string& column, const std::string& value);
    void LessThan(const std::string& column, const std::string& value);
    /// A number, which stands without quotes.
    void EqualNumber(const std::string& column, long long value);
    void GreaterNumber(const std::string& column, long long value);
    void AtMostNumber(const std::string& column, long long value);
    /// A plain decimal, digit by digit.
    void AtLeastDecimal(const std::string& column, const std::string& digits);
    void AtMostDecimal(const std::string& column, const std::string& digits);

    /// "" or " WHERE …".
    std::string Clause() const;

private:
    void Add(const std::string& condition);

    std::string m_clause;
};

/// The value as a literal of a statement.
std::string Literal(const std::string& value);

/// The rows of a query, one by one, forward only. Every step raises Refusal with kCouldNotRun when
/// the database refuses. Database, connection and columns must outlive it.
class RowReader
{
public:
    RowReader(CDatabase& database, const Connection& connection, const std::string& statement,
              const std::vector<std::string>& columns);
    ~RowReader();
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    /// False past the last row.
    bool Next(QueryRow& row);

    /// Whether the row's value of a column is NULL and not an empty text.
    bool IsNull(const char* column) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// Hands each row of a query to `take` until it returns false.
template <typename Take>
void ForEachRow(CDatabase& database, const Connection& connection, const std::string& statement,
                const std::vector<std::string>& columns, Take&& take)
{
    RowReader reader(database, connection, statement, columns);
    QueryRow row;
    while (reader.Next(row) && take(row))
    {
    }
}

} // namespace host
