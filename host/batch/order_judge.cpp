#include "host/batch/order_judge.h"

#include "host/batch/asked.h"
#include "host/batch/order_path.h"
#include "host/batch/terms.h"
#include "host/judgement.h"
#include "host/order_lock.h"
#include "host/refusal.h"
#include "host/text.h"
#include "host/work_file_guard.h"
#include "port/file_identity.h"

#include <chrono>
#include <utility>

namespace batch
{

namespace
{

using host::CheckRequest;
using host::CheckResult;
using host::Refusal;

constexpr std::size_t kFileNameKept = 256;
constexpr unsigned int kVerdictSuccess = 1;

OrderResult Ended(const Order& order, Ending ending, const std::string& error)
{
    OrderResult result;
    result.path = order.path;
    result.ending = ending;
    result.error = error;
    return result;
}

bool HasApostrophe(const std::string& text)
{
    return text.find('\'') != std::string::npos;
}

// The history row is what tells after a kill that an order was judged. What would lose it, or would
// give two orders the same one, is refused before anything is judged.
std::string ObstacleToRecord(const CheckRequest& request)
{
    const std::string cost = ", which would cost the history row by which an interrupted run tells "
                             "what was judged. ";
    if (HasApostrophe(request.file))
    {
        return "the path of the order file holds an apostrophe" + cost + "Rename it.";
    }
    if (HasApostrophe(request.orderId))
    {
        return "the order identifier holds an apostrophe" + cost + "Give it without.";
    }
    for (const std::string& signer : request.signerNames)
    {
        if (HasApostrophe(signer))
        {
            return "the signer " + host::Quoted(signer) + " holds an apostrophe" + cost +
                   "Judge the order alone with signcheck check, or use a certificate name without.";
        }
    }
    return request.file.size() <= kFileNameKept
               ? std::string()
               : "the path of the order file has more than " + std::to_string(kFileNameKept) +
                     " characters, of which the history row keeps no more, so that an interrupted "
                     "run could take one order for another. Move the orders to a folder with a "
                     "shorter path.";
}

// Whether the verdict is about a file that is not there any more; empty when it is.
std::string ChangeSince(const std::string& path, const std::string& version,
                        const port::FileIdentity& identity)
{
    constexpr const char* kRow = " Its history row, if there is one, is about what was there: do "
                                 "not take that for a decision.";
    const auto now = VersionOf(path);
    if (!now)
    {
        return std::string("it went away while it was judged.") + kRow;
    }
    return *now == version && port::IdentifyFile(path) == identity
               ? std::string()
               : std::string("it was changed or replaced while it was judged.") + kRow +
                     " What lies there now is judged as another order. Put orders into the folder "
                     "whole, by renaming them.";
}

/// The seconds from its making to the end of the scope.
class Stopwatch
{
public:
    explicit Stopwatch(double& seconds) : m_seconds(seconds) {}
    ~Stopwatch()
    {
        m_seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

private:
    double& m_seconds;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace

int GravityOf(int status)
{
    // A refusal is an answer; what was not judged, or on nothing, needs somebody.
    constexpr int kFromLight[] = {host::kDone, host::kFindings, host::kNoRule,
                                  host::kAmountsUnknown, host::kCouldNotRun};
    int rank = 0;
    for (const int each : kFromLight)
    {
        if (each == status)
        {
            return rank;
        }
        ++rank;
    }
    return rank;
}

OrderJudge::OrderJudge(const RunTerms& run, ProgressJournal& journal)
    : m_run(run), m_journal(journal), m_history(run.connection)
{
}

OrderResult OrderJudge::Judge(const Order& order)
{
    if (!order.fault.empty())
    {
        return Ended(order, Ending::NotJudged, order.fault);
    }
    const auto version = VersionOf(order.path);
    if (!version)
    {
        const bool isListed = order.terms != nullptr;
        return Ended(order, Ending::Gone,
                     isListed ? "there is no such file, or none that can be looked at. Put it "
                                "back, or leave it out of the list."
                              : "it went away before it was judged. Nothing is recorded of it.");
    }
    OrderResult result = Ended(order, Ending::NotJudged, "");
    const Stopwatch watch(result.seconds);
    try
    {
        result.request = RequestOf(order);
        result.error = ObstacleToRecord(*result.request);
    }
    catch (const Refusal& refusal)
    {
        result.error = refusal.what();
    }
    return result.error.empty() ? JudgeLocked(order, *version, std::move(result)) : result;
}

CheckRequest OrderJudge::RequestOf(const Order& order) const
{
    host::OptionValues own;
    if (m_run.isTermsBeside)
    {
        own = TermsBeside(order.path);
    }
    else if (order.terms)
    {
        own = *order.terms;
    }
    RequireOwnReport(own, m_run.common);
    host::OptionValues values = WithCommon(std::move(own), m_run.common);
    values.AddUnlessThere("file", {order.path, "the order"});
    CheckRequest request = host::ReadCheckRequest(values);
    if (request.amountsFromFile)
    {
        request.format = host::ReadOrderFormat(values, request.file);
    }
    return request;
}

OrderResult OrderJudge::JudgeLocked(const Order& order, const std::string& version,
                                    OrderResult result)
{
    const host::OrderLock lock(result.request->file, m_run.holder);
    if (!lock.IsTaken())
    {
        result.ending = lock.IsHeldByOther() ? Ending::Held : Ending::NotJudged;
        result.error = lock.IsHeldByOther() ? lock.Obstacle() : lock.Failure();
        return result;
    }
    const std::string asked = DigestOfAsked(*result.request);
    std::optional<RecordedDecision> recorded;
    long long newest = 0;
    try
    {
        newest = m_history.Newest();
        if (const auto begun = m_journal.Find(order.key, version); begun && begun->asked == asked)
        {
            recorded = m_history.DecisionOn(*result.request, begun->after);
        }
    }
    catch (const Refusal& refusal)
    {
        result.ending = Ending::DatabaseAway;
        result.error = refusal.what();
        return result;
    }
    if (recorded)
    {
        TakeRecorded(*recorded, result);
    }
    else
    {
        m_journal.Begin(order.key, version, newest, asked);
        AskLibraryOnce(order, version, asked, result);
    }
    if (result.IsForNextRun())
    {
        m_journal.GiveUp(order.key);
        result.check.warnings.emplace_back(
            "nothing says that the order itself is at fault, so it does not count as judged. The "
            "next run judges it again: repair the cause.");
    }
    else if (result.IsJudged())
    {
        m_journal.Done(order.key, version, host::OutcomeName(result.check));
    }
    return result;
}

void OrderJudge::AskLibraryOnce(const Order& order, const std::string& version,
                                const std::string& asked, OrderResult& result)
{
    const CheckRequest& request = *result.request;
    const port::FileIdentity identity = port::IdentifyFile(order.path);
    std::vector<std::string> warnings = host::WarningsBefore(request);
    const host::WorkFileGuard workFiles(request.file);
    if (request.amountsFromFile && !workFiles.Warning().empty())
    {
        warnings.push_back(workFiles.Warning());
    }
    result.check = host::AskLibrary(request);
    if (!result.check.ran)
    {
        m_journal.GiveUp(order.key);
        result.ending = Ending::DatabaseAway;
        result.error = "the check could not be run" +
                       (result.check.problem.empty() ? std::string() : ": " + result.check.problem);
        return;
    }
    if (std::string change = ChangeSince(order.path, version, identity); !change.empty())
    {
        m_journal.GiveUp(order.key);
        result.ending = Ending::Gone;
        result.error = std::move(change);
        return;
    }
    result.ending = Ending::Judged;
    for (std::string& warning : host::WarningsAfter(request, result.check))
    {
        warnings.push_back(std::move(warning));
    }
    if (DigestOfAsked(request) != asked)
    {
        warnings.emplace_back("the order file was changed while it was judged, or its rights or "
                              "its name were. Put orders into the folder whole, by renaming them.");
    }
    result.check.warnings = std::move(warnings);
    result.status = result.IsIncomplete() ? host::kCouldNotRun : host::ExitStatusOf(result.check);
}

// What amounts the check worked out, and what it warned of, nobody knows any more.
void OrderJudge::TakeRecorded(const RecordedDecision& decision, OrderResult& result) const
{
    const CheckRequest& request = *result.request;
    CheckResult& check = result.check;
    result.ending = Ending::Recovered;
    check.verdict = decision.verdict;
    check.ran = true;
    check.rulesComplete = true;
    check.reasonText = decision.motif;
    check.journal = "not-due";
    check.amounts = host::AmountsAskedFor(request);
    // The rules of a file whose amounts could not be worked out are judged on 0.
    if (request.amountsFromFile && decision.total > 0.0)
    {
        check.amounts.origin = host::AmountsOrigin::File;
        check.amounts.total = decision.total;
        check.amounts.largest = decision.largest;
    }
    check.warnings.emplace_back(
        "it was judged by a run that was cut off; verdict and reason are those of the history. See "
        "whether its audit event" +
        std::string(decision.verdict > kVerdictSuccess && !request.psrService.empty()
                        ? " and its status report are"
                        : " is") +
        " there (signcheck events, signcheck reports).");
    result.status = host::ExitStatusOf(check);
}

} // namespace batch
