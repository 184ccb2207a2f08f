#include "rules/check_signatures.h"

#include "containers/shared_ref_impl.h"
#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "rules/contract_lookup.h"
#include "rules/history_writer.h"
#include "rules/rule_evaluation.h"
#include "rules/rule_messages.h"
#include "rules/signer_list.h"
#include "rules/verdict.h"
#include "support/odbc_errors.h"
#include "support/trace.h"

namespace rules
{

namespace
{

constexpr int kLevel = 1;
constexpr int kGrowBy = 128;
constexpr std::uint32_t kHistoryError = 0x0A28001A;
constexpr char kUnknown[] = "unknown";

void NoteProblem(CheckTrail& trail, const char* text)
{
    if (trail.problem.IsEmpty())
    {
        trail.problem = text;
    }
}

void TraceProblem(const CheckInput& input, CheckTrail& trail, const char* label, const char* text)
{
    TraceValue(input.trace, label, text, kLevel);
    NoteProblem(trail, text);
}

void TraceContract(const CheckInput& input)
{
    const ContractKey& contract = input.contract;
    TimeTraceDump(input.trace, "SIGNATURES RULES SEARCH", 0, 0);
    TraceValue(input.trace, "Partner  ", contract.partner, kLevel);
    TraceValue(input.trace, "Protocol ", contract.protocolName, kLevel);
    TraceValue(input.trace, "Service  ", contract.service, kLevel);
    TraceValue(input.trace, "Client   ", contract.client, kLevel);
    TraceValue(input.trace, "Mode     ", contract.serverMode ? "SRV" : "DEM", kLevel);
    TraceValue(input.trace, "VEU      ", contract.veu ? "YES" : "NO", kLevel);
}

// Opens the session's connection unless it is open. One that could not be opened never becomes the
// session's, so that the next check tries again.
[[nodiscard]] bool ReachDatabase(const CheckInput& input, CheckTrail& trail)
{
    if (input.connexionString == nullptr || *input.connexionString == '\0')
    {
        TraceProblem(input, trail, "Error", "DSN not defined");
        return false;
    }
    if (input.sessionDatabase.Get() != nullptr)
    {
        return true;
    }
    return database::GuardDatabase(
        [&]
        {
            SharedRef<CDatabase> connection;
            connection.Emplace().OpenEx(input.connexionString,
                                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            input.sessionDatabase = connection;
        },
        [&](const CDBException& raised)
        { TraceProblem(input, trail, "Exception", raised.GetText()); },
        [&] { TraceProblem(input, trail, "Exception", kUnknown); });
}

// False when the check cannot go on. After a database error it goes on with the rules read so far.
[[nodiscard]] bool ReadContract(const CheckInput& input, TArray<cuidRule>& rules, CheckTrail& trail)
{
    bool usable = true;
    trail.rulesComplete = database::GuardDatabase(
        [&] { LoadRules(*input.sessionDatabase.Get(), input.trace, input.contract, rules); },
        [&](const CDBException& raised)
        { TraceProblem(input, trail, "Exception", raised.GetText()); },
        [&]
        {
            TraceProblem(input, trail, "Exception", kUnknown);
            usable = false;
        });
    return usable;
}

void Judge(const CheckInput& input, const TSimpleStringW& signerList, TArray<cuidRule>& rules,
           TArray<ruleSign>& decisions, TSimpleStringW& journal, CheckTrail& trail)
{
    trail.lookupsComplete = true;
    const SigningFacts facts = {
        {input.sessionDatabase.Get(), input.trace, &trail.problem, &trail.lookupsComplete},
        input.sessionSigners,
        input.sessionSigners.GetCount(),
        signerList.SafeGetString(),
        input.contract.veu,
        input.order.totalAmount,
        input.order.maxOrderAmount,
    };
    EvaluateRules(facts, rules, decisions, journal);
    trail.ran = true;
}

// No rule concerns the signers. Gives the text of that finding.
TSimpleStringW FindNoRule(const CheckInput& input, const TSimpleStringW& signerList,
                          TSimpleString& reasonCode, TSimpleStringW& reasonText,
                          TSimpleStringW& journal)
{
    TimeTraceDump(input.trace, "SIGNERS FOUND #0", 0, 0);
    TraceValue(input.trace, "#RULE4 FAILED", "NO RULES FOUND FOR SIGNERS !!!", kLevel);
    reasonCode = "NARR";
    reasonText.GenerateString(kNarrativeReason);
    TSimpleStringW finding;
    finding.GenerateString(kNoRuleForSigners, signerList);
    Journal(journal, finding);
    return finding;
}

// Writes the rows through a connection of its own. An error loses the rows not yet written and
// nothing else: the verdict stands.
void RecordHistory(const CheckInput& input, const HistoryFacts& facts,
                   const TArray<ruleSign>& decisions, const TSimpleStringW& noRule,
                   CheckTrail& trail)
{
    const int count = decisions.GetCount();
    trail.rowsDue = count == 0 ? 1U : static_cast<std::uint32_t>(count);
    database::GuardDatabase(
        [&]
        {
            HistoryWriter writer(input.connexionString);
            if (count == 0)
            {
                writer.WriteNoRule(facts, noRule, trail.rowsWritten);
            }
            else
            {
                writer.WriteDecisions(facts, decisions, trail.rowsWritten);
            }
        },
        [&](const CDBException& raised)
        {
            NoteProblem(trail, raised.GetText());
            tagODBCERROR error{};
            ODBC_PrepareStrucError(error, "SignRules");
            const TSimpleString text = ODBC_FormatStrucError(
                error, kHistoryError, raised.GetReturnCode(), raised.GetFirstText().SafeGetString(),
                raised.GetSecondText().SafeGetString());
            TraceValue(input.trace, "***Exception", text.SafeGetString(), kLevel);
        },
        [&] { TraceProblem(input, trail, "***Exception", kUnknown); });
}

void Announce(const CheckInput& input, std::uint32_t verdict, const TSimpleStringW& journal)
{
    const VerdictHeading& heading = HeadingOf(verdict);
    const TSimpleStringW text = EventText(heading, journal);
    TimeTraceDump(input.trace, heading.title, 0, 0);
    input.journal.LogEvent(heading.level, text.SafeGetString());
}

} // namespace

std::uint32_t CheckSignatures(const CheckInput& input, TSimpleString& reasonCode,
                              TSimpleStringW& reasonText, CheckTrail& trail)
{
    trail = CheckTrail();
    const TSimpleStringW signerList(input.signers);
    AppendSigners(input.trace, signerList.SafeGetString(), input.sessionSigners);
    TraceContract(input);
    TArray<cuidRule> rules(kGrowBy);
    if (!ReachDatabase(input, trail) || !ReadContract(input, rules, trail))
    {
        return kVerdictFailed;
    }

    // No rule leaves more than one decision.
    TArray<ruleSign> decisions(rules.GetCount());
    TSimpleStringW journal;
    Judge(input, signerList, rules, decisions, journal, trail);

    std::uint32_t verdict = kVerdictNoRule;
    TSimpleStringW noRule;
    if (decisions.GetCount() == 0)
    {
        noRule = FindNoRule(input, signerList, reasonCode, reasonText, journal);
    }
    else
    {
        verdict = ReduceDecisions(decisions, reasonCode, reasonText);
    }

    const HistoryFacts facts = {input.contract, input.order, signerList.SafeGetString(), verdict};
    RecordHistory(input, facts, decisions, noRule, trail);
    Announce(input, verdict, journal);
    return verdict;
}

} // namespace rules
