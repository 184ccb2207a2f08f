#pragma once

#include "host/connection.h"
#include "host/scratch/name.h"

#include <string>
#include <vector>

class CDatabase;

namespace scratch
{

/// The kind of a copy that is a file.
inline constexpr const char* kKindOfFile = "SQLite file";

/// The kind of a trace.
inline constexpr const char* kKindOfTrace = "trace file";

/// A copy or a trace that is there now: that of a command at work, or one that a kill left behind.
/// Which of the two, its process tells, on the machine that runs it.
struct Leftover
{
    std::string kind; ///< "PostgreSQL schema", "MariaDB database", "SQLite file", "trace file"
    std::string name; ///< of the schema or database, or the file's path; UTF-8
    NameParts parts;
    std::string remedy; ///< the statement that drops it, or "delete the file"

    bool IsFile() const { return kind == kKindOfFile || kind == kKindOfTrace; }
};

/// Copies in the product of the source, as far as its user can see them, by name: a PostgreSQL
/// user sees those in the database of the connection, a MariaDB user those that he has rights on.
/// None for a product in which none are made. Raises host::Refusal with kCouldNotRun.
std::vector<Leftover> LeftoversIn(CDatabase& source, const host::Connection& connection);

/// Copies and traces in the folder for temporary files, and traces in that of progress journals, by
/// name. Raises host::Refusal with kCouldNotRun when the first cannot be read.
std::vector<Leftover> LeftoverFiles();

} // namespace scratch
