#pragma once

#include "host/connection.h"
#include "host/rulebook/rule_book_reader.h"

namespace rulebook
{

/// Opens the database and checks that it has the rule tables and a schema that this program knows.
/// Raises Refusal with kCouldNotRun.
void OpenRuleTables(CDatabase& database, const host::Connection& connection);

/// As ReadRuleBook, but a failure is a Refusal with kCouldNotRun and a remedy.
RuleBook ReadBook(CDatabase& database, const host::Connection& connection,
                  const ContractFilter& filter = {});

} // namespace rulebook
