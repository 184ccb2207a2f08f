#pragma once

#include "host/rulebook/rule_book.h"

class CDatabase;

namespace rulebook
{

/// Writes the book into tables that hold nothing of it, in its order. A statement a row; the
/// transaction is the caller's. Raises CDBException*.
void WriteRuleBook(CDatabase& database, const RuleBook& book);

/// The row of a holder alone, and one holder with its certificates, or one contract with its rules,
/// behind what is there.
void WriteHolderRow(CDatabase& database, const Holder& holder);
void WriteHolder(CDatabase& database, const Holder& holder);
void WriteContract(CDatabase& database, const Contract& contract);

} // namespace rulebook
