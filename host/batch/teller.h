#pragma once

#include "host/batch/order_result.h"
#include "host/batch/progress_bar.h"
#include "host/batch/tally.h"
#include "host/output_format.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace batch
{

/// Tells what becomes of the orders of a run as it goes: JSON lines, rows of CSV, or a line for
/// what was not accepted and a bar at a terminal. One thread at a time.
class Teller
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `total`: orders of the run; 0 where nobody knows, and then there is no bar. `start` is that
    /// of the run, before it waited for anything. Raises as Tell.
    Teller(host::OutputFormat format, std::size_t total, Time start);

    /// Raises host::Refusal with kCouldNotRun when standard output cannot be written.
    void Tell(const OrderResult& result);
    /// Ends the run with its counts.
    void Sum();

    Tally& Counts() noexcept { return m_tally; }

private:
    void TellInWords(const OrderResult& result);

    host::OutputFormat m_format;
    bool m_hasTotal;
    Tally m_tally;
    ProgressBar m_bar;
    Time m_start;
};

/// One result as one object of the JSON lines.
nlohmann::ordered_json ResultAsJson(const OrderResult& result);
/// One result as one line of words, without its end.
std::string ResultInWords(const OrderResult& result);

} // namespace batch
