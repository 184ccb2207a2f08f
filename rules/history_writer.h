#pragma once

#include "containers/tarray.h"
#include "database/cdatabase.h"
#include "rules/statements.h"

#include <cstdint>

namespace rules
{

/// Writes the decisions of one check into HST_SIGNRULES.
///
/// Owns a connection of its own, closed by the destructor, so that a failed insert leaves the
/// session's connection as it was.
class HistoryWriter
{
public:
    /// Opens the connection. Raises CDBException*.
    explicit HistoryWriter(const char* connexionString);

    /// One row each, in order, counted in `written` as they are there. Raises CDBException*; rows
    /// already written stay.
    void WriteDecisions(const HistoryFacts& facts, const TArray<ruleSign>& decisions,
                        std::uint32_t& written);

    /// The one row of a check that no rule concerns.
    void WriteNoRule(const HistoryFacts& facts, const TSimpleStringW& motif,
                     std::uint32_t& written);

private:
    void Write(const HistoryFacts& facts, const HistoryFinding& finding, std::uint32_t& written);

    CDatabase m_database;
    HistoryFinding m_finding; // of the row under way
};

} // namespace rules
