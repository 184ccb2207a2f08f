#pragma once

#include "tests/model/plain_rules.h"

namespace model
{

/// The rows of one check that reach the table: those before the first that would end a literal.
struct Rows
{
    std::vector<HistoryRow> written;
    std::uint32_t due = 0;
};

Rows RowsOf(const Session& session, const Case& given, const Call& call,
            const std::vector<Decision>& decisions, std::uint32_t verdict);

/// The journal's entry of a message.
Event EventOf(const Session& session, int level, const Text& message);

/// The status report in UTF-8, with kTimeOfReport in the place of its time.
std::string ReportOf(const Session& session, const Text& reasonCode, const Text& reasonText);

} // namespace model
