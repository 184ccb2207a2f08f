#pragma once

#include "tests/model/expected.h"
#include "tests/model/real_bank.h"
#include "tests/model/scenario.h"

#include <cstdint>
#include <vector>

namespace model
{

/// What the library answered and left behind.
struct Seen
{
    Results results;
    std::vector<std::uint32_t> reportFileIds; ///< of the reports handed on, in their order
};

/// Runs a world's sessions through the public class, on a real database through ODBC.
Seen RunLibrary(RealBank& bank, const World& world);

} // namespace model
