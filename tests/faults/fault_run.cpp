#include "tests/faults/fault_run.h"

#include "database/cdatabase.h"
#include "database/idle_pool.h"
#include "signutils/signutils.h"
#include "tests/signers/failing_rows.h"

#include <filesystem>

namespace faults
{

namespace
{

constexpr wchar_t kWaiting[] = L"waits since before";

std::string MadeFolder(const std::string& path)
{
    std::filesystem::create_directories(path);
    return path;
}

std::string StillOpen(const char* kind, const fault_driver::Handles& handles)
{
    return handles.allocated == handles.freed
               ? ""
               : std::to_string(handles.allocated) + " " + kind + " handles allocated, " +
                     std::to_string(handles.freed) + " freed";
}

void NoteRemains(const std::string& folder, bool (*mayStay)(const std::filesystem::path&),
                 model::Results& results)
{
    if (!std::filesystem::exists(folder))
    {
        return;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        if (entry.is_regular_file() && !mayStay(entry.path()))
        {
            results.problems.push_back("stayed behind: " + entry.path().string());
        }
    }
}

} // namespace

FaultRun::FaultRun(fault_driver::Entries entries)
    : m_temporary("TMPDIR", MadeFolder(m_folder.Path("temporary")).c_str()), m_entries(entries),
      m_control(fault_driver::LoadedControl(entries))
{
}

FaultRun::~FaultRun()
{
    database::EmptyIdlePool();
}

std::string FaultRun::ConnexionString(const Scenario& scenario) const
{
    return fault_driver::ThroughFaultDriver(m_bank.ConnexionString(), m_entries) +
           (scenario.rowByRow ? testing_support::kRowByRow : "");
}

void FaultRun::PutEventIntoSpool(const std::string& connexionString)
{
    m_bank.HideJournal();
    {
        SignUtils object;
        object.SetConnexionString(connexionString.c_str());
        object.LogEvent(0, kWaiting);
    }
    m_bank.ShowJournal();
}

/// Leaves two connections in the pool.
void FaultRun::WarmPool(const std::string& connexionString)
{
    CDatabase one;
    CDatabase other;
    one.OpenEx(connexionString.c_str(), CDatabase::kNoOdbcDialog);
    other.OpenEx(connexionString.c_str(), CDatabase::kNoOdbcDialog);
}

void FaultRun::TakeWaitingEvent(model::Results& results)
{
    if (results.journal.empty() || results.journal.front().text.find(kWaiting) == model::Text::npos)
    {
        results.problems.push_back("the event that waited is not the first one");
        return;
    }
    results.journal.erase(results.journal.begin());
}

void FaultRun::LookForRemains(model::Results& results) const
{
    for (const std::string& open : {StillOpen("environment", m_control.environmentHandles),
                                    StillOpen("connection", m_control.connectionHandles),
                                    StillOpen("statement", m_control.statementHandles)})
    {
        if (!open.empty())
        {
            results.problems.push_back(open);
        }
    }
    NoteRemains(
        m_folder.Path("temporary"), [](const std::filesystem::path&) { return false; }, results);
    NoteRemains(
        m_bank.SpoolFolder(),
        [](const std::filesystem::path& path) { return path.extension() == ".lock"; }, results);
    NoteRemains(
        m_bank.StoreFolder(),
        [](const std::filesystem::path& path) { return path.stem() == "identifiers"; }, results);
}

Shown FaultRun::Run(const Scenario& scenario, const fault_driver::Plan& plan)
{
    const std::string connexionString = ConnexionString(scenario);
    const testing_support::ScopedEnvironment pool("SIGNUTILS_POOL",
                                                  scenario.pool == Pool::Off ? "0" : "1");
    m_control = fault_driver::Control();
    Shown shown;
    bool first = true;
    std::chrono::steady_clock::time_point started;

    model::Surroundings surroundings;
    surroundings.connexionString = connexionString;
    surroundings.eventsMayWait = true;
    surroundings.beforeCall = [&]
    {
        if (!first)
        {
            return;
        }
        if (scenario.eventWaits)
        {
            PutEventIntoSpool(connexionString);
        }
        if (scenario.pool == Pool::Warm)
        {
            WarmPool(connexionString);
        }
        m_control.calls.clear();
        m_control.counted = 0;
        m_control.plan = plan;
        started = std::chrono::steady_clock::now();
    };
    surroundings.afterCall = [&](const SignUtils& object)
    {
        if (!first)
        {
            return;
        }
        first = false;
        shown.elapsed = std::chrono::steady_clock::now() - started;
        m_control.plan = fault_driver::Plan();
        shown.log = {m_control.calls, m_control.statements};
        shown.counted = m_control.counted;
        shown.faults = m_control.faults;
        shown.problem = object.GetLastCheck().problem.SafeGetString();
    };
    shown.seen = model::RunLibrary(m_bank, scenario.world, surroundings);
    database::EmptyIdlePool();
    if (scenario.eventWaits)
    {
        TakeWaitingEvent(shown.seen.results);
    }
    LookForRemains(shown.seen.results);
    return shown;
}

} // namespace faults
