#pragma once

#include "tests/fault_driver/fault_driver.h"
#include "tests/model/mishaps.h"

#include <cstdint>
#include <string>
#include <vector>

namespace faults
{

/// What a check asked of its driver.
struct Log
{
    std::vector<fault_driver::Call> calls;
    std::vector<fault_driver::Statement> statements;
};

/// What must follow from a fault.
struct Foresight
{
    std::vector<model::Mishaps> mishaps; ///< of the check and of the one behind it
    bool noticed = false;                ///< the outcome names a problem
    bool journalHurt = false;            ///< an event may have to wait in the spool
};

/// Told from a run in which nothing failed: up to its first fault another run asks for the same.
/// `keepsConnection`: the second check goes on with the first one's connection.
Foresight Foresee(const Log& clean, const fault_driver::Plan& plan, bool keepsConnection);

/// The call that fails, for messages.
std::string Describe(const Log& clean, std::uint64_t number);

} // namespace faults
