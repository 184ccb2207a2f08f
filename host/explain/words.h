#pragma once

#include "host/authority/remedies.h"
#include "host/explain/trace_reader.h"
#include "support/messages.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace explain
{

/// A check rule by rule, in plain words for a terminal of 80 columns.
std::string InWords(const TracedCheck& check, support::Language language);

/// What would have been accepted instead.
std::string InWords(const std::vector<authority::Remedy>& remedies, support::Language language);

nlohmann::ordered_json AsJson(const TracedCheck& check);
nlohmann::ordered_json AsJson(const std::vector<authority::Remedy>& remedies);

} // namespace explain
