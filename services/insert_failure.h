#pragma once

#include "database/cdbexception.h"
#include "services/event_spool.h"

#include <string>

namespace services
{

/// What a refused insert means for the event of this key.
Delivery JudgeFailedInsert(const CDBException& raised, const std::string& key);

/// Whether the connection itself is gone or does not answer in time.
bool IsConnectionLost(const CDBException& raised);

} // namespace services
