#pragma once

#include <string>

namespace engine_tests
{

// Amount texts of any length, added and compared without the code under test. Results have two
// decimals at least and no zeros that say nothing.

std::string Normal(const std::string& amount);
std::string Sum(const std::string& left, const std::string& right);
std::string Larger(const std::string& left, const std::string& right);

} // namespace engine_tests
