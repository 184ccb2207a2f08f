#include "host/status_line.h"

#include "port/program.h"
#include "support/format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace host
{

namespace
{

constexpr std::size_t kWidth = 20;
constexpr auto kBetween = std::chrono::milliseconds(100);
constexpr char kEscape = '\x1B';
constexpr const char* kClearLine = "\r\x1B[K";

std::string Duration(double seconds)
{
    const auto whole = std::llround(seconds);
    return support::FormatA("%d:%02d:%02d", static_cast<int>(whole / 3600),
                            static_cast<int>(whole / 60 % 60), static_cast<int>(whole % 60));
}

} // namespace

std::string Gauge(std::size_t done, std::size_t total)
{
    const std::size_t filled = total == 0 ? kWidth : std::min(done, total) * kWidth / total;
    return "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
           std::to_string(done) + "/" + std::to_string(total);
}

std::string Pace(std::size_t done, std::size_t total, double seconds)
{
    const double rate = seconds > 0.0 ? static_cast<double>(done) / seconds : 0.0;
    std::string words = support::FormatA(", %.0f/s", rate);
    if (rate > 0.0)
    {
        words +=
            ", " + Duration(static_cast<double>(total - std::min(done, total)) / rate) + " left";
    }
    return words;
}

std::string FitInto(const std::string& line, std::size_t columns)
{
    std::string fitting;
    std::size_t shown = 0;
    for (std::size_t at = 0; at < line.size();)
    {
        const std::size_t end = line[at] == kEscape ? line.find('m', at) : at;
        const std::size_t length = end == std::string::npos ? line.size() - at : end + 1 - at;
        const bool isColour = line[at] == kEscape;
        if (isColour || columns == 0 || shown < columns)
        {
            fitting.append(line, at, length);
            shown += isColour ? 0 : 1;
        }
        at += length;
    }
    return fitting;
}

StatusLine::StatusLine(std::chrono::milliseconds wait)
    : m_isOn(port::ErrorIsTerminal()), m_next(m_start + wait)
{
}

StatusLine::~StatusLine()
{
    Clear();
}

bool StatusLine::IsDue() const
{
    return m_isOn && Clock::now() >= m_next;
}

double StatusLine::SecondsSinceStart() const
{
    return std::chrono::duration<double>(Clock::now() - m_start).count();
}

void StatusLine::Draw(const std::string& line)
{
    m_isDrawn = true;
    m_next = Clock::now() + kBetween;
    // A line that wraps would leave its first part behind with every new one; a full one may wrap.
    const std::size_t columns = port::ErrorColumns();
    std::fputs((kClearLine + FitInto(line, columns > 1 ? columns - 1 : columns)).c_str(), stderr);
}

void StatusLine::Clear()
{
    if (m_isDrawn)
    {
        std::fputs(kClearLine, stderr);
        m_isDrawn = false;
        m_next = {}; // what was taken away comes back at once
    }
}

} // namespace host
