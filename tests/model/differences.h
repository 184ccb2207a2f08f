#pragma once

#include "tests/model/expected.h"

#include <string>

namespace model
{

/// Every field in which the library and the model disagree, a line each; empty when they agree.
std::string Differences(const Results& seen, const Results& told);

} // namespace model
