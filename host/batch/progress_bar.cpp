#include "host/batch/progress_bar.h"

#include "host/palette.h"
#include "port/program.h"
#include "support/format.h"

#include <algorithm>
#include <cstdio>

namespace batch
{

namespace
{

constexpr std::size_t kWidth = 20;
constexpr auto kBetween = std::chrono::milliseconds(100);
constexpr const char* kClearLine = "\r\x1B[K";
std::string Duration(double seconds)
{
    const auto whole = static_cast<long long>(seconds + 0.5);
    return support::FormatA("%d:%02d:%02d", static_cast<int>(whole / 3600),
                            static_cast<int>(whole / 60 % 60), static_cast<int>(whole % 60));
}

} // namespace

std::string ProgressLine(const Tally& tally, std::size_t total, double seconds, bool isColoured)
{
    const std::size_t done = std::min(tally.Told(), total);
    const std::size_t filled = total == 0 ? kWidth : done * kWidth / total;
    const double rate = seconds > 0.0 ? static_cast<double>(done) / seconds : 0.0;
    std::string line = "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
                       std::to_string(done) + "/" + std::to_string(total) + " files, ";
    line += host::Painted(isColoured && tally.Refused() > 0, host::Tone::Doubtful,
                          std::to_string(tally.Refused()) + " refused") +
            ", ";
    line += host::Painted(isColoured && tally.NotJudged() > 0, host::Tone::Bad,
                          std::to_string(tally.NotJudged()) + " errors");
    line += support::FormatA(", %.0f/s", rate);
    if (rate > 0.0)
    {
        line += ", " + Duration(static_cast<double>(total - done) / rate) + " left";
    }
    return line;
}

ProgressBar::ProgressBar(std::size_t total)
    : m_total(total), m_isOn(port::ErrorIsTerminal()), m_isColoured(host::AreErrorsColoured())
{
}

ProgressBar::~ProgressBar()
{
    Clear();
}

void ProgressBar::Show(const Tally& tally)
{
    const auto now = std::chrono::steady_clock::now();
    if (!m_isOn || (m_isDrawn && now - m_last < kBetween))
    {
        return;
    }
    m_isDrawn = true;
    m_last = now;
    const double seconds = std::chrono::duration<double>(now - m_start).count();
    std::fputs((kClearLine + ProgressLine(tally, m_total, seconds, m_isColoured)).c_str(), stderr);
}

void ProgressBar::Clear()
{
    if (m_isDrawn)
    {
        std::fputs(kClearLine, stderr);
        m_isDrawn = false;
    }
}

} // namespace batch
