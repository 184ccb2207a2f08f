#pragma once

#include "host/batch/tally.h"
#include "host/status_line.h"

#include <cstddef>
#include <string>

namespace batch
{

/// The line at a terminal that tells how far a run is.
class ProgressBar
{
public:
    /// `total`: orders of the run.
    explicit ProgressBar(std::size_t total);

    /// Draws the line anew where that is due.
    void Show(const Tally& tally);
    /// Takes the line away, so that something else can be written.
    void Clear() { m_line.Clear(); }

private:
    std::size_t m_total;
    bool m_isColoured;
    host::StatusLine m_line;
};

/// The line: bar, orders done of all, refused, errors, rate, time left.
std::string ProgressLine(const Tally& tally, std::size_t total, double seconds, bool isColoured);

} // namespace batch
