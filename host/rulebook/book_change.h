#pragma once

#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <vector>

namespace rulebook
{

/// A holder or contract before and after; null where it is not there.
template <typename Item>
struct ItemChange
{
    const Item* before = nullptr;
    const Item* after = nullptr;
};

/// What a rule file would make different. Refers to the two books, which must outlive it.
struct BookChange
{
    std::vector<ItemChange<Holder>> holders;
    std::vector<ItemChange<Contract>> contracts;
    std::size_t otherHolders = 0; ///< of the database, not in the file, and left as they are
    std::size_t otherContracts = 0;

    bool IsEmpty() const noexcept { return holders.empty() && contracts.empty(); }
};

/// Compares the database with a file that names each holder and contract once. A holder or contract
/// of the file stands for all of it: certificates, terms and rules that are not there go. What the
/// file does not name goes only when `removesOthers`.
BookChange Compare(const RuleBook& database, const RuleBook& file, bool removesOthers);

/// The database's book once the change is made.
RuleBook Changed(const RuleBook& database, const BookChange& change);

} // namespace rulebook
