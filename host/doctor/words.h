#pragma once

#include "host/doctor/finding.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace doctor
{

/// A table for a terminal of 80 columns, each remedy below what it is for, and the sum.
std::string AsText(const Findings& findings);

nlohmann::ordered_json AsJson(const Findings& findings);

/// How doctor ends: host::kFindings when something failed, else host::kDone.
int StatusOf(const Findings& findings);

} // namespace doctor
