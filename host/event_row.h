#pragma once

#include "host/audit_event.h"
#include "host/history_row.h"
#include "host/listing/newest_first.h"
#include "host/listing/record.h"
#include "host/query.h"

#include <optional>
#include <string>
#include <vector>

namespace host
{

/// The event journal and its key.
inline constexpr listing::NumberedTable kEventTable = {"EVT_JOURNAL", "EVENTID"};

/// The columns of an audit event as they are read.
const std::vector<std::string>& EventColumns();

/// How audit events are listed.
const listing::Shape& EventShape();

/// An event in both of its forms; row and text must outlive it.
listing::Record EventRecord(const QueryRow& row, const AuditEvent& text);

/// The number of a level given by name or number. Raises UsageRefusal that lists them.
int LevelFrom(const OptionValue& value);

/// The verdict that a check's heading tells; none for an event that is no check's or whose check
/// ended otherwise.
std::optional<int> VerdictOf(const AuditEvent& event);

} // namespace host
