#pragma once

#include "host/statusreport/report.h"

#include <string>

namespace statusreport
{

/// What the report says, in paragraphs; then its faults, each with `file`, line, element and
/// remedy.
std::string InWords(const Report& report, const std::string& file);

} // namespace statusreport
