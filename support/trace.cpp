#include "support/trace.h"

#include "port/cancellation.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/cttime.h"
#include "support/format.h"
#include "support/trace_text.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace
{

/// One open trace. Lines are gathered and written a section at a time.
class Trace
{
public:
    explicit Trace(port::File file) : m_file(std::move(file)), m_sectionStart(Clock::now()) {}
    ~Trace() { Write(); }
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    void AddSection(std::string_view title)
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point now = Clock::now();
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(now - m_sectionStart).count();
        m_sectionStart = now;
        m_lines += support::FormatA("[%s +%I64d ms] ", LocalTimeText().c_str(),
                                    static_cast<long long>(elapsed));
        m_lines.append(title).append("\n");
        Write();
    }

    void Add(std::string_view lines)
    {
        const std::lock_guard lock(m_mutex);
        m_lines.append(lines);
        if (m_lines.size() >= kLargestSection)
        {
            Write();
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    // A section that grows beyond it is written in parts, so that memory stays bounded.
    static constexpr std::size_t kLargestSection = std::size_t{64} * 1024;

    static std::string LocalTimeText()
    {
        const CTTime now = CTTime::GetTickCount();
        char seconds[20] = {};
        now.GetDatabaseTimestamp(seconds, sizeof seconds);
        const std::int64_t milliseconds = now.GetMilliseconds() - now.GetTime() * 1000;
        return support::FormatA("%s.%03d", seconds, static_cast<int>(milliseconds));
    }

    /// What cannot be written is given up: a full disk stops the trace, never the check. A thread
    /// that is being cancelled finishes its write.
    void Write() noexcept
    {
        const port::CancellationHold hold;
        static_cast<void>(m_lines.empty() || m_file.Write(m_lines.data(), m_lines.size()));
        m_lines.clear();
    }

    std::mutex m_mutex;
    port::File m_file;
    std::string m_lines;
    Clock::time_point m_sectionStart;
};

std::string NarrowLine(const char* text)
{
    return support::TraceLineText(support::WideFromNarrow(text == nullptr ? "" : text));
}

void AddValue(void* trace, const char* label, const std::string& value)
{
    std::string line = NarrowLine(label);
    line.append(": ").append(value).append("\n");
    static_cast<Trace*>(trace)->Add(line);
}

/// Runs what writes into a trace; without memory the line is missing and the host is spared.
template <typename Writing>
void Guarded(const void* trace, const Writing& writing)
{
    if (!TraceIsUsable(trace))
    {
        return;
    }
    try
    {
        writing();
    }
    catch (const std::bad_alloc&)
    {
        return;
    }
}

} // namespace

void* TraceOpen(const char* path)
{
    try
    {
        port::File file;
        if (path == nullptr || !file.Open(path, port::OpenMode::Append))
        {
            return nullptr;
        }
        return std::make_unique<Trace>(std::move(file)).release();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void TraceClose(void* trace)
{
    if (TraceIsUsable(trace))
    {
        const std::unique_ptr<Trace> owner(static_cast<Trace*>(trace));
    }
}

bool TraceIsUsable(const void* trace) noexcept
{
    const auto value = reinterpret_cast<std::uintptr_t>(trace);
    return value != 0 && value != UINTPTR_MAX;
}

void TimeTraceDump(void* trace, const char* title, unsigned long /*first*/,
                   unsigned long /*second*/)
{
    Guarded(trace, [=] { static_cast<Trace*>(trace)->AddSection(NarrowLine(title)); });
}

void TraceValue(void* trace, const char* label, const char* value, int /*level*/)
{
    Guarded(trace, [=] { AddValue(trace, label, NarrowLine(value)); });
}

void TraceValueUTF8(void* trace, const char* label, const wchar_t* value, int /*level*/)
{
    Guarded(trace, [=]
            { AddValue(trace, label, support::TraceLineText(value == nullptr ? L"" : value)); });
}

void TraceString(void* trace, const char* text)
{
    Guarded(trace,
            [=]
            {
                const std::string_view bytes = text == nullptr ? "" : text;
                std::wstring wide;
                if (!support::TryWideFromUtf8(bytes, wide))
                {
                    wide = support::WideFromNarrow(bytes);
                }
                static_cast<Trace*>(trace)->Add(support::TraceBlockText(wide));
            });
}
