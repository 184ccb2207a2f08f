#pragma once

#include "tests/fault_driver/loaded.h"
#include "tests/faults/foresight.h"
#include "tests/faults/scenarios.h"
#include "tests/model/library_run.h"
#include "tests/model/real_bank.h"
#include "tests/testing/temporary_folder.h"

#include <chrono>
#include <string>

namespace faults
{

/// What one run of a scenario showed besides its answers.
struct Shown
{
    model::Seen seen;
    Log log; ///< of the check that the plan was for
    std::uint64_t counted = 0;
    std::uint64_t faults = 0;
    std::string problem; ///< that the check's outcome names, of a whole check
    std::chrono::steady_clock::duration elapsed{};
};

/// Runs scenarios through the fault driver, in a bank and folders of its own.
class FaultRun
{
public:
    explicit FaultRun(fault_driver::Entries entries = fault_driver::Entries::Narrow);
    ~FaultRun();

    /// Runs both checks, the first one with the plan's faults. Adds to the results' problems what
    /// stayed behind: open handles, temporary files, waiting events, halves of reports.
    Shown Run(const Scenario& scenario, const fault_driver::Plan& plan);

private:
    std::string ConnexionString(const Scenario& scenario) const;
    void PutEventIntoSpool(const std::string& connexionString);
    static void WarmPool(const std::string& connexionString);
    static void TakeWaitingEvent(model::Results& results);
    void LookForRemains(model::Results& results) const;

    model::RealBank m_bank;
    testing_support::TemporaryFolder m_folder;
    testing_support::ScopedEnvironment m_temporary;
    fault_driver::Entries m_entries;
    fault_driver::Control& m_control;
};

} // namespace faults
