#pragma once

#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <optional>
#include <string>

class CDatabase;

namespace rulebook
{

/// Which contracts to read; all of them when nothing is set. Holders are then those whom their
/// rules name.
struct ContractFilter
{
    std::optional<std::string> cuid;
    /// Every contract with a row of this key: what a check for it may meet, whatever the order
    /// type.
    std::optional<ContractKey> key;
};

/// Reads the tables. Rules stand in the order in which a check judges them, as far as they are of
/// one contract: where several contracts share key and order type, the product decides whose rules
/// come first. Raises CDBException*.
RuleBook ReadRuleBook(CDatabase& database, const ContractFilter& filter = {});

/// Certificates of holders who are not there: no look-up finds them and no rule book holds them.
/// Raises CDBException*.
std::size_t CountStrayCertificates(CDatabase& database);

} // namespace rulebook
