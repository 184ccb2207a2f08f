#pragma once

#include "containers/tick.h"

namespace testing_support
{

/// Puts a counter under the test's control in place of the system's.
class Ticks
{
public:
    explicit Ticks(std::uint32_t start = 1000)
    {
        s_now = start;
        containers::SetTickSource([] { return s_now; });
    }
    ~Ticks() { containers::SetTickSource(nullptr); }
    Ticks(const Ticks&) = delete;
    Ticks& operator=(const Ticks&) = delete;

    void Set(std::uint32_t now) { s_now = now; }
    void Pass(std::uint32_t milliseconds) { s_now += milliseconds; }

private:
    static inline std::uint32_t s_now = 0;
};

} // namespace testing_support
