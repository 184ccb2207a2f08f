#pragma once

#include "tests/model/expected.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace model
{

/// How many scenarios came upon each outcome.
class OutcomeCounts
{
public:
    void Add(const std::vector<Outcomes>& scenarios);

    std::int64_t Scenarios() const { return m_scenarios; }
    /// A line for each outcome: how many scenarios, and their share.
    std::string Table() const;
    /// The outcomes that fewer than 1 % of the scenarios came upon.
    std::string Rare() const;

private:
    double Share(std::size_t outcome) const;

    std::int64_t m_scenarios = 0;
    std::array<std::int64_t, static_cast<std::size_t>(Outcome::Count)> m_counts{};
};

} // namespace model
