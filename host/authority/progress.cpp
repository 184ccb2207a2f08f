#include "host/authority/progress.h"

namespace authority
{

namespace
{

// What is done before needs no line.
constexpr auto kWait = std::chrono::milliseconds(500);

} // namespace

Progress::Progress(const char* what, std::size_t total)
    : m_what(what), m_total(total), m_line(kWait)
{
}

void Progress::Step()
{
    ++m_done;
    if (m_line.IsDue())
    {
        m_line.Draw(ProgressText(m_what, m_done, m_total, m_line.SecondsSinceStart()));
    }
}

std::string ProgressText(const char* what, std::size_t done, std::size_t total, double seconds)
{
    return host::Gauge(done, total) + " " + what + host::Pace(done, total, seconds) +
           ", Ctrl-C ends it";
}

std::size_t Choices(std::size_t count, std::size_t size)
{
    std::size_t choices = 1;
    for (std::size_t chosen = 0; chosen < size; ++chosen)
    {
        // Of numbers in a row one is divisible, so nothing is rounded.
        choices = chosen < count ? choices * (count - chosen) / (chosen + 1) : 0;
    }
    return choices;
}

} // namespace authority
