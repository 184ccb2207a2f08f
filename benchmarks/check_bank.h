#pragma once

#include <cstddef>
#include <string>

namespace benchmarks
{

/// Makes the tables and what SampleCheck needs in them: the contract with `rules` lines, each for
/// the same two holders, and `others` holders more with a certificate each. What the null driver
/// answers and what this database answers lead to the same statements. Raises std::runtime_error.
void MakeBank(const std::string& connexionString, std::size_t rules, std::size_t others);

} // namespace benchmarks
