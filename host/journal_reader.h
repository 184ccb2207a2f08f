#pragma once

#include "host/check_request.h"

#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace host
{

/// What the audit event of a check says.
struct CheckEvent
{
    long long eventId = 0;
    std::vector<std::string> findings; ///< its lines behind the heading, UTF-8
};

/// Number of the newest event; none when the journal may not be read, which is no failure: a host
/// user may only be allowed to insert.
std::optional<long long> NewestEvent(CDatabase& database, const Connection& connection);

/// The event that a check with this request wrote after event `before`. Its lines tell why, also
/// where the verdict comes without a reason text.
std::optional<CheckEvent> FindCheckEvent(CDatabase& database, const CheckRequest& request,
                                         long long before);

} // namespace host
