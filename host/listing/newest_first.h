#pragma once

#include "host/query.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace listing
{

/// A table whose rows have rising numbers that are never given twice.
struct NumberedTable
{
    const char* name;
    const char* number; ///< its key column
};

/// The rows of a numbered table that fit conditions, the newest first, in memory that does not grow
/// with their number: drivers keep a whole answer, so it is asked for by bands of numbers. Rows
/// that are added meanwhile have larger numbers and are not met. Every step raises Refusal with
/// kCouldNotRun when the database refuses. All arguments must outlive it.
class NewestFirst
{
public:
    /// Only rows with numbers below the last argument, when it is given.
    NewestFirst(CDatabase& database, const host::Connection& connection, const NumberedTable& table,
                const std::vector<std::string>& columns, const host::Conditions& conditions,
                std::optional<std::int64_t> below);

    /// False past the oldest row.
    bool Next(host::QueryRow& row);

    /// Whether the row's value of a column is NULL and not an empty text.
    bool IsNull(const char* column) const { return m_band->IsNull(column); }

private:
    bool OpenBand();
    std::optional<std::int64_t> Largest() const;

    CDatabase& m_database;
    const host::Connection& m_connection;
    const NumberedTable& m_table;
    const std::vector<std::string>& m_columns;
    const host::Conditions& m_conditions;
    std::int64_t m_upTo; ///< the largest number not met yet
    std::int64_t m_width;
    std::optional<host::RowReader> m_band;
};

} // namespace listing
