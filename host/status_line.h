#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace host
{

/// "[#####...............] 3/12".
std::string Gauge(std::size_t done, std::size_t total);

/// ", 2/s, 0:00:05 left", what is left only once something is done.
std::string Pace(std::size_t done, std::size_t total, double seconds);

/// As much of a line as `columns` characters show, ends of colours among it; the whole line where
/// `columns` is 0. The line is ASCII but for colours.
std::string FitInto(const std::string& line, std::size_t columns);

/// One line at a terminal that tells how far a command is, drawn anew on standard error.
class StatusLine
{
public:
    /// Draws nothing before `wait` has passed, and nothing where standard error is no terminal.
    explicit StatusLine(std::chrono::milliseconds wait = {});
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    /// Whether it should be drawn now: at most ten times a second.
    bool IsDue() const;
    double SecondsSinceStart() const;
    void Draw(const std::string& line);
    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    bool m_isOn;
    bool m_isDrawn = false;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next;
};

} // namespace host
