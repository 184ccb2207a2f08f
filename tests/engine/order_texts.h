#pragma once

#include "engine/convert.h"
#include "engine/failure.h"

#include <cstddef>
#include <optional>
#include <string>

namespace engine_tests
{

/// Converts the order file and gives back why that failed, nothing when it did not.
std::optional<engine::Failure> FailureOf(engine::Work work, const std::string& order,
                                         const std::string& stem);

/// A pain.001 message of one transfer of 1.00 EUR to a counterparty of that name.
std::string Transfer(const std::string& name);

/// A CFONB 160 remittance of one transfer of 100.00 EUR: a header, an order and a total, each
/// filled up to `length` characters and parted by nothing.
std::string RecordsWithoutLineEnds(std::size_t length);

} // namespace engine_tests
