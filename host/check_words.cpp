#include "host/check_result.h"

#include "host/decision.h"
#include "host/paragraph.h"

namespace host
{

namespace
{

std::string Decision(const CheckResult& result)
{
    const std::string outcome = OutcomeName(result);
    if (outcome == "not-run")
    {
        return "NOT RUN: nothing was decided, because the check could not be run.";
    }
    if (outcome == "no-rule")
    {
        return "NO RULE: no rule of the contract concerns these signers (verdict 0).";
    }
    if (outcome == "success")
    {
        return result.amounts.AreKnown()
                   ? "ACCEPTED: the signatures satisfy the contract's rules (verdict 1)."
                   : "ACCEPTED ON UNKNOWN AMOUNTS: the signatures satisfy the contract's rules as "
                     "far as they do not depend on the amounts (verdict 1).";
    }
    return "REFUSED: the signatures do not satisfy the contract's rules (verdict 2).";
}

std::vector<std::string> Reasons(const CheckResult& result)
{
    std::vector<std::string> reasons = result.findings;
    if (reasons.empty() && !result.reasonText.empty())
    {
        reasons.push_back(result.reasonText);
    }
    if (reasons.empty() && !result.problem.empty())
    {
        reasons.push_back(result.problem);
    }
    if (reasons.empty())
    {
        reasons.emplace_back("No reason was given; the audit event in EVT_JOURNAL tells more.");
    }
    if (!result.reasonCode.empty())
    {
        reasons.push_back("Reason code " + result.reasonCode + ".");
    }
    return reasons;
}

std::string Rows(const CheckResult& result)
{
    return std::to_string(result.rowsWritten) + " of " + std::to_string(result.rowsDue) +
           (result.rowsDue == 1 ? " history row" : " history rows") + " in HST_SIGNRULES";
}

std::string Event(const CheckResult& result)
{
    if (result.journal == "written")
    {
        return result.eventId ? "audit event " + std::to_string(*result.eventId) + " in EVT_JOURNAL"
                              : std::string("one audit event in EVT_JOURNAL");
    }
    if (result.journal == "spooled")
    {
        return "one audit event in the spool folder, not yet in EVT_JOURNAL";
    }
    return result.journal == "lost" ? "NO audit event" : "no audit event, as none was due";
}

std::string Report(const CheckRequest& request, const CheckResult& result)
{
    if (result.reportHandedOn)
    {
        return "handed on as " + (result.reportPath.empty()
                                      ? "file " + std::to_string(result.reportFileId)
                                      : result.reportPath);
    }
    if (result.report)
    {
        return "written, but not handed on";
    }
    return request.psrService.empty() ? "none was asked for" : "none was due";
}

} // namespace

std::string CheckInWords(const CheckRequest& request, const CheckResult& result)
{
    std::string words;
    AppendParagraph(words, "Order", request.fileShown);
    AppendDecision(words, Decision(result));
    AppendParagraph(words, "Amounts", AmountsInWords(request, result.amounts));
    const auto reasons = Reasons(result);
    for (std::size_t index = 0; index < reasons.size(); ++index)
    {
        AppendParagraph(words, index == 0 ? "Why" : "", reasons[index]);
    }
    if (result.ran)
    {
        AppendParagraph(words, "Recorded", Rows(result) + "; " + Event(result) + ".");
        AppendParagraph(words, "", "Database " + request.connection.shown);
    }
    else
    {
        AppendParagraph(words, "Recorded", "nothing");
    }
    AppendParagraph(words, "Report", Report(request, result));
    return words;
}

} // namespace host
