#include "host/check_result.h"

#include "host/exit_status.h"
#include "host/sentence.h"
#include "host/text.h"
#include "support/codepage.h"

namespace host
{

namespace
{

constexpr unsigned int kVerdictNoRule = 0;
constexpr unsigned int kVerdictSuccess = 1;

void WarnOfReport(const CheckRequest& request, const CheckResult& result,
                  std::vector<std::string>& warnings)
{
    if (!result.report || request.psrService.empty())
    {
        return;
    }
    if (!result.reportHandedOn)
    {
        warnings.push_back("the status report was written but NOT handed on to service " +
                           Quoted(support::Utf8FromNarrow(request.psrService)) + " of the store " +
                           Quoted(support::Utf8FromNarrow(HandOffStore(request))) +
                           BecauseOf(result.reportProblem) +
                           " Check that the store is a folder and writable.");
    }
    else if (!result.ran)
    {
        warnings.emplace_back("a status report without a reason was handed on although the check "
                              "could not be run; withdraw it.");
    }
}

} // namespace

std::string OutcomeName(const CheckResult& result)
{
    if (!result.ran || !result.verdict)
    {
        return "not-run";
    }
    switch (*result.verdict)
    {
    case kVerdictNoRule:
        return "no-rule";
    case kVerdictSuccess:
        return "success";
    default:
        return "refused";
    }
}

int ExitStatusOf(const CheckResult& result)
{
    if (!result.ran || !result.verdict)
    {
        return kCouldNotRun;
    }
    switch (*result.verdict)
    {
    case kVerdictNoRule:
        return kNoRule;
    case kVerdictSuccess:
        return result.amounts.AreKnown() ? kDone : kAmountsUnknown;
    default:
        return kFindings;
    }
}

std::vector<std::string> WarningsAfter(const CheckRequest& request, const CheckResult& result)
{
    std::vector<std::string> warnings;
    if (!result.ran)
    {
        warnings.push_back("the check could NOT be run, so nothing was decided" +
                           BecauseOf(result.problem) +
                           " Repair the cause and check again; do not read this as a refusal.");
        WarnOfReport(request, result, warnings);
        return warnings;
    }
    if (!result.rulesComplete)
    {
        warnings.push_back("not all rules of the contract could be read" +
                           BecauseOf(result.problem) + " The verdict rests on those that were.");
    }
    if (!result.lookupsComplete)
    {
        warnings.push_back("not all holders of the signers could be looked up" +
                           BecauseOf(result.problem) + " Rules may not have found their signers.");
    }
    WarnOfAmounts(request, result.amounts, warnings);
    if (result.rowsWritten < result.rowsDue)
    {
        warnings.push_back(std::to_string(result.rowsDue - result.rowsWritten) + " of " +
                           std::to_string(result.rowsDue) + " history rows were NOT written" +
                           BecauseOf(result.problem) +
                           " The verdict stands, but HST_SIGNRULES does not show it in full.");
    }
    if (result.journal == "spooled")
    {
        warnings.emplace_back("the audit event was NOT written to EVT_JOURNAL; it is kept in the "
                              "spool folder and delivered by a later check on this database.");
    }
    else if (result.journal == "lost")
    {
        warnings.emplace_back("the audit event was LOST: neither EVT_JOURNAL nor the spool folder "
                              "could be written. Check both, and check the order again.");
    }
    WarnOfReport(request, result, warnings);
    return warnings;
}

} // namespace host
