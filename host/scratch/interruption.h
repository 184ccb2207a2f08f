#pragma once

#include "host/refusal.h"

namespace scratch
{

/// Ends a command that a signal has interrupted.
class Interrupted : public host::Refusal
{
public:
    Interrupted();
};

/// While one lives, SIGINT and SIGTERM end the process where Check is called only, so that what
/// lies in the database for the time of a command is dropped. A second signal ends it at once.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// For commands that end by themselves.
    static bool HasCome() noexcept;
    /// Raises Interrupted when a signal has come.
    static void Check();
};

} // namespace scratch
