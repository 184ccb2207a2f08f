#pragma once

#include "services/event_record.h"

#include <optional>
#include <string>
#include <string_view>

namespace services
{

/// An event as one line of a spool file: a flat JSON object in UTF-8 whose members are the columns
/// of the journal table, always all and in this order, and a line feed.
std::string EventLine(const EventRecord& event);

/// Reads such a line, without its line feed. Nothing unless it is exactly what EventLine writes:
/// what a crash or an editor left behind must not reach a journal.
std::optional<EventRecord> ReadEventLine(std::string_view line);

/// What the line of the event with this key begins with, and no other.
std::string EventLineStart(const std::string& key);

} // namespace services
