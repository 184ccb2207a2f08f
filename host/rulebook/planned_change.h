#pragma once

#include "host/connection.h"
#include "host/option_values.h"
#include "host/rulebook/book_change.h"
#include "host/rulebook/checked_file.h"

class CDatabase;

namespace rulebook
{

/// A rule file against a database; `change` refers to the other two.
struct PlannedChange
{
    PlannedChange() = default;
    PlannedChange(const PlannedChange&) = delete;
    PlannedChange& operator=(const PlannedChange&) = delete;

    RuleBook database;
    CheckedFile checked;
    BookChange change;
};

/// Opens the database, reads it and the file of argument FILE, and compares them; --remove takes
/// away what the file does not name. Problems of the file are told on standard error. Raises
/// Refusal.
void Plan(const host::OptionValues& values, const host::Connection& connection, CDatabase& database,
          PlannedChange& planned);

} // namespace rulebook
