#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace testing_support
{

/// A run of the built signcheck that goes on beside the test; POSIX only. What it prints goes into
/// two files of the folder, "output" and "errors".
class StartedCommand
{
public:
    StartedCommand(const std::string& folder, const std::vector<std::string>& arguments);
    /// Kills what still runs.
    ~StartedCommand();
    StartedCommand(const StartedCommand&) = delete;
    StartedCommand& operator=(const StartedCommand&) = delete;

    pid_t Process() const noexcept { return m_process; }
    void Signal(int number) const;
    /// Its exit status, or 256 and the signal that ended it.
    int End();

    std::string Output() const;
    std::string Errors() const;

private:
    std::string m_output;
    std::string m_errors;
    pid_t m_process = 0;
};

/// Whether this comes to hold within a minute.
bool ComesToHold(const std::function<bool()>& condition);

} // namespace testing_support
