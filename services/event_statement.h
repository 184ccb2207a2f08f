#pragma once

#include "services/event_record.h"

#include <string>

namespace services
{

/// The statement that writes an event into EVT_JOURNAL. Quotes are doubled; texts are cut to the
/// lengths of their columns, TEXT excepted; EVENTID is the database's to give.
std::wstring EventInsertStatement(const EventRecord& event);

} // namespace services
