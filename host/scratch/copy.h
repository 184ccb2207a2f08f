#pragma once

#include "host/rulebook/rule_book.h"
#include "host/scratch/place.h"

#include <string>

namespace scratch
{

/// Raises host::Refusal with kCouldNotRun where a schema is installed already. What stands in a
/// copy's place is deleted, and a driver that ignored the way there would have the bank's rules go.
void RequireEmptyPlace(CDatabase& database, const host::Connection& where);

/// A copy of a rule book that the library can judge by without a trace in the bank's tables: its
/// history rows and audit events go into the copy, and with it.
class Copy
{
public:
    /// Raises host::Refusal with kCouldNotRun.
    Copy(CDatabase& source, const host::Connection& connection, const rulebook::RuleBook& book);

    /// Puts another rule book in the place of the one that is there. Raises as the constructor.
    void Replace(const rulebook::RuleBook& book);

    /// Deletes what checks have recorded in the copy, which grows with every one. Raises as the
    /// constructor.
    void ForgetChecks();

    const host::Connection& Where() const noexcept { return m_place.Where(); }

    /// One sentence: where the decisions came from, and what may differ where the copy could not be
    /// made in the source's product.
    std::string Provenance() const;

private:
    Place m_place;
};

} // namespace scratch
