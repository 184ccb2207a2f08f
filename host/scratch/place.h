#pragma once

#include "host/connection.h"
#include "host/scratch/interruption.h"

#include <string>

class CDatabase;

namespace scratch
{

/// What the name of a file with a copy ends with.
inline constexpr const char* kFileEnding = ".db";

/// Somewhere for a copy of a rule book to lie, empty and nobody else's: a schema, database or file
/// in the product of the source, dropped at the end of the scope. Its name tells when,
/// by which process and for whom it was made, so that what a kill left behind can be found; see
/// LeftoversIn.
class Place
{
public:
    /// Where the source's user may create none, a SQLite file takes its place. Raises
    /// host::Refusal with kCouldNotRun when that fails, too.
    Place(CDatabase& source, const host::Connection& connection);
    ~Place();
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    /// How to reach it.
    const host::Connection& Where() const noexcept { return m_where; }
    /// Such as "a SQLite file of its own".
    const std::string& Kind() const noexcept { return m_kind; }
    /// Why a SQLite file stands in for the source's product; empty when it does not.
    const std::string& Reason() const noexcept { return m_reason; }

private:
    bool TryWithin(CDatabase& source, const host::Connection& connection);
    void TakeFile(const host::Connection& connection, bool sourceIsSqlite);

    Interruption m_interruption; ///< ends behind the place
    host::Connection m_where;
    std::string m_name;
    std::string m_kind;
    std::string m_reason;
    host::Connection m_source; ///< where m_drop is run
    std::wstring m_drop;       ///< empty for a file
    std::string m_file;        ///< Windows-1252
};

} // namespace scratch
