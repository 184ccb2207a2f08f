#pragma once

#include "host/exit_status.h"

#include <stdexcept>
#include <string>

namespace host
{

/// Ends the command before anything is judged or written. The text (UTF-8) names what was given,
/// its value and the remedy.
class Refusal : public std::runtime_error
{
public:
    Refusal(int status, const std::string& message) : std::runtime_error(message), m_status(status)
    {
    }

    int Status() const noexcept { return m_status; }

private:
    int m_status;
};

/// A refusal for wrong usage.
class UsageRefusal : public Refusal
{
public:
    explicit UsageRefusal(const std::string& message) : Refusal(kUsage, message) {}
};

} // namespace host
