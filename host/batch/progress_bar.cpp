#include "host/batch/progress_bar.h"

#include "host/palette.h"

#include <algorithm>

namespace batch
{

std::string ProgressLine(const Tally& tally, std::size_t total, double seconds, bool isColoured)
{
    const std::size_t done = std::min(tally.Told(), total);
    std::string line = host::Gauge(done, total) + " files, ";
    line += host::Painted(isColoured && tally.Refused() > 0, host::Tone::Doubtful,
                          std::to_string(tally.Refused()) + " refused") +
            ", ";
    line += host::Painted(isColoured && tally.NotJudged() > 0, host::Tone::Bad,
                          std::to_string(tally.NotJudged()) + " errors");
    return line + host::Pace(done, total, seconds);
}

ProgressBar::ProgressBar(std::size_t total)
    : m_total(total), m_isColoured(host::AreErrorsColoured())
{
}

void ProgressBar::Show(const Tally& tally)
{
    if (m_line.IsDue())
    {
        m_line.Draw(ProgressLine(tally, m_total, m_line.SecondsSinceStart(), m_isColoured));
    }
}

} // namespace batch
