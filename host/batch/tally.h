#pragma once

#include "host/batch/order_result.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>

namespace batch
{

/// The counts of a run.
class Tally
{
public:
    void Add(const OrderResult& result);
    /// Orders that an earlier run had judged.
    void AddSkipped(std::size_t count) { m_skipped += count; }
    /// Orders that nobody came to.
    void SetLeft(std::size_t count) { m_left = count; }

    /// Orders that wait for their terms.
    void SetWithoutTerms(std::size_t count) { m_withoutTerms = count; }

    std::size_t Told() const;
    std::size_t Refused() const { return m_refused; }
    std::size_t NotJudged() const { return m_notJudged; }

    /// The gravest of all orders; "could not be run" when some are left.
    int Status() const;
    nlohmann::ordered_json AsJson(double seconds) const;
    /// One sentence.
    std::string InWords(double seconds) const;

private:
    std::size_t m_accepted = 0;
    std::size_t m_refused = 0;
    std::size_t m_noRule = 0;
    std::size_t m_amountsUnknown = 0;
    std::size_t m_incomplete = 0; ///< among those above
    std::size_t m_recovered = 0;  ///< among those above
    std::size_t m_notJudged = 0;
    std::size_t m_skipped = 0;
    std::size_t m_left = 0;
    std::size_t m_withoutTerms = 0;
    int m_status = 0;
};

} // namespace batch
