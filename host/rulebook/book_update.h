#pragma once

#include "host/connection.h"
#include "host/rulebook/book_change.h"

class CDatabase;

namespace rulebook
{

/// Makes the change in one transaction, all or nothing. `before` is the book that the change was
/// made from: when the database holds another one by now, nothing is written. What was written is
/// read back before it counts. Raises Refusal; its text says whether anything was changed.
void UpdateBook(CDatabase& database, const host::Connection& connection, const RuleBook& before,
                const BookChange& change);

} // namespace rulebook
