#pragma once

#include "host/batch/tally.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace batch
{

/// The line at a terminal that tells how far a run is, drawn on standard error.
class ProgressBar
{
public:
    /// `total`: orders of the run. Draws nothing where standard error is no terminal.
    explicit ProgressBar(std::size_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Draws the line anew, at most ten times a second.
    void Show(const Tally& tally);
    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    std::size_t m_total;
    bool m_isOn;
    bool m_isColoured;
    bool m_isDrawn = false;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point m_last;
};

/// The line: bar, orders done of all, refused, errors, rate, time left.
std::string ProgressLine(const Tally& tally, std::size_t total, double seconds, bool isColoured);

} // namespace batch
