#pragma once

#include "host/status_line.h"

#include <cstddef>
#include <string>

namespace authority
{

/// Tells at a terminal how far a long row of questions to the library is, while one lives.
class Progress
{
public:
    /// `what` is tried `total` times, such as "sets of changes".
    Progress(const char* what, std::size_t total);

    /// One more was tried, or could be left out.
    void Step();

private:
    const char* m_what;
    std::size_t m_total;
    std::size_t m_done = 0;
    host::StatusLine m_line;
};

/// The line.
std::string ProgressText(const char* what, std::size_t done, std::size_t total, double seconds);

/// In how many ways `size` of `count` can be chosen.
std::size_t Choices(std::size_t count, std::size_t size);

} // namespace authority
