#pragma once

#include "host/explain/words.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>

namespace explain
{

/// Which check it was, as far as its trace tells: order file, moment and contract. `number` counts
/// from 1 up to `count`, the checks of the trace.
Section OriginOf(const TracedCheck& check, std::size_t number, std::size_t count,
                 support::Language language);

nlohmann::ordered_json OriginAsJson(const TracedCheck& check);

} // namespace explain
