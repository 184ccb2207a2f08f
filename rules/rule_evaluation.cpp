#include "rules/rule_evaluation.h"

#include "rules/numbered_section.h"
#include "rules/rule_messages.h"
#include "support/casefold.h"
#include "support/trace.h"

#include <utility>

namespace rules
{

namespace
{

constexpr int kLevel = 1;
constexpr int kTotalLevel = 0;
constexpr int kLargestOrderLevel = 1;
constexpr int kSingleSignature = 0;
constexpr int kDoubleSignature = 1;
constexpr char kRuler[] = "---------------------------";
constexpr char kAmountReason[] = "AM02";
constexpr char kNarrative[] = "NARR";
// Where the messages would take a currency.
constexpr wchar_t kNoCurrency[] = L"";

enum class Outcome
{
    GoOn,     ///< the next check decides
    Recorded, ///< decided: the decision is kept
    Dropped,  ///< the rule does not concern these signers
};

/// One rule on its way through the checks.
struct RuleCase
{
    const SigningFacts& facts;
    cuidRule& rule;
    TArray<signerInfo>& working; ///< the signers, in which the look-ups mark those that are taken
    TSimpleStringW& journal;
    ruleSign decision;
    int found1; ///< 1: the first holder is among the signers
    int found2;

    void* Trace() const { return facts.directory.trace; }
};

void Show(const RuleCase& subject, const char* label, const char* value)
{
    TraceValue(subject.Trace(), label, value, kLevel);
}

Outcome Decide(RuleCase& subject, std::int32_t status)
{
    subject.decision.status = status;
    return Outcome::Recorded;
}

Outcome CheckActive(RuleCase& subject)
{
    if (subject.rule.active != 0)
    {
        return Outcome::GoOn;
    }
    Show(subject, "#RULE8 FAILED", "CONTRACT NOT ACTIVE!");
    subject.decision.message.GenerateString(kContractNotActive);
    Journal(subject.journal, subject.decision.message);
    return Outcome::Dropped;
}

// Names the holder of the signer's certificate; a certificate of nobody leaves the signer empty.
void NameSigner(RuleCase& subject, int index, holderSlot& holder, signerInfo& signer)
{
    if (index >= subject.facts.signerCount)
    {
        return;
    }
    const TSimpleStringW& certificate = subject.facts.signers.GetAt(index)->certificate;
    if (signers::GetSignerNames(subject.facts.directory, certificate.SafeGetString(),
                                holder.firstName, holder.lastName) != 0)
    {
        signer.certificate = certificate;
        signer.lastName = holder.lastName;
        signer.firstName = holder.firstName;
    }
}

Outcome CheckAllHolders(RuleCase& subject)
{
    if (subject.rule.allHolders == 0)
    {
        return Outcome::GoOn;
    }
    Show(subject, "#RULE SUCCEEDDED", "ALL SIGNERS ALLOWED!");
    subject.decision.message.GenerateString(kAllSignersAllowed);
    // A history row has room for two.
    NameSigner(subject, 0, subject.rule.holder1, subject.decision.signer1);
    NameSigner(subject, 1, subject.rule.holder2, subject.decision.signer2);
    Journal(subject.journal, subject.decision.message);
    return Decide(subject, kStatusSuccess);
}

int FindHolder(const RuleCase& subject, holderSlot& holder, TArray<signerInfo>& working,
               signerInfo& signer)
{
    const int found = signers::GetSignerInfos(subject.facts.directory, holder.huid,
                                              holder.notOpposition, holder.certificateName,
                                              holder.firstName, holder.lastName, &working);
    if (found != 0)
    {
        signer.certificate = holder.certificateName;
        signer.lastName = holder.lastName;
        signer.firstName = holder.firstName;
    }
    return found;
}

// One certificate serves one holder of a rule, and the next rule starts afresh.
void FreeSigners(TArray<signerInfo>& working)
{
    for (int i = 0; i < working.GetCount(); ++i)
    {
        working.GetAt(i)->firstName.Empty();
        working.GetAt(i)->lastName.Empty();
    }
}

Outcome FindHolders(RuleCase& subject)
{
    TArray<signerInfo>& working = subject.working;
    FreeSigners(working);
    cuidRule& rule = subject.rule;
    subject.found1 = FindHolder(subject, rule.holder1, working, subject.decision.signer1);
    if (rule.alone == 0)
    {
        subject.found2 = FindHolder(subject, rule.holder2, working, subject.decision.signer2);
    }
    return Outcome::GoOn;
}

Outcome CheckSameCertificate(RuleCase& subject)
{
    const holderSlot& first = subject.rule.holder1;
    const holderSlot& second = subject.rule.holder2;
    if (subject.found1 == 0 || subject.found2 == 0 ||
        !support::EqualIgnoringCase(first.certificateName, second.certificateName,
                                    signers::kNameCapacity - 1U))
    {
        return Outcome::GoOn;
    }
    Show(subject, "Warning", "#Signers with same certificates");
    subject.decision.message.GenerateString(kSameCertificate, first.firstName, first.lastName,
                                            first.certificateName, second.firstName,
                                            second.lastName);
    Journal(subject.journal, subject.decision.message);
    return Decide(subject, kStatusFailed);
}

Outcome RefuseOpposition(RuleCase& subject, const holderSlot& holder)
{
    ruleSign& decision = subject.decision;
    decision.reasonCode = kAmountReason;
    decision.reasonText.GenerateString(kHolderInOpposition, holder.lastName, holder.firstName,
                                       holder.certificateName, subject.facts.totalAmount,
                                       kNoCurrency);
    TraceValueUTF8(subject.Trace(), "#RULE1 FAILED", decision.reasonText.SafeGetString());
    Journal(subject.journal, decision.reasonText);
    return Decide(subject, kStatusFailed);
}

Outcome CheckOpposition(RuleCase& subject)
{
    const cuidRule& rule = subject.rule;
    if (subject.found1 != 0 && rule.holder1.notOpposition == 0)
    {
        return RefuseOpposition(subject, rule.holder1);
    }
    if (subject.found1 == 0 && subject.found2 == 0)
    {
        Show(subject, "Warning", "#Signer not found");
        return Outcome::Dropped;
    }
    if (subject.found2 != 0 && rule.holder2.notOpposition == 0)
    {
        return RefuseOpposition(subject, rule.holder2);
    }
    return Outcome::GoOn;
}

// Warns only; the warning stays in the row unless a graver message takes its place.
Outcome WarnOfTooManySigners(RuleCase& subject)
{
    if (subject.facts.signerCount > 2 && !subject.facts.veu)
    {
        Show(subject, "warning", "too much signers !!!");
        subject.decision.message.GenerateString(kTooManySigners);
        Journal(subject.journal, subject.decision.message);
    }
    return Outcome::GoOn;
}

Outcome CheckAlone(RuleCase& subject)
{
    if (subject.facts.signerCount < 2 || subject.rule.alone == 0 || subject.facts.veu)
    {
        return Outcome::GoOn;
    }
    Show(subject, "#RULE7 FAILED", "sign alone error");
    subject.decision.message.GenerateString(kMustSignAlone);
    Journal(subject.journal, subject.decision.message);
    return Outcome::Dropped;
}

Outcome CheckBothHolders(RuleCase& subject)
{
    const bool both = subject.found1 != 0 && subject.found2 != 0;
    if (subject.facts.signerCount < 2 || both || subject.facts.veu)
    {
        return Outcome::GoOn;
    }
    Show(subject, "#RULE6 FAILED", "R\xE8gle manquantes");
    subject.decision.message.GenerateString(kHolderMissing, subject.facts.signerList);
    Journal(subject.journal, subject.decision.message);
    return Outcome::Dropped;
}

Outcome RefuseProfile(RuleCase& subject, const char* finding, unsigned int messageNumber)
{
    Show(subject, "#RULE5 FAILED", finding);
    ruleSign& decision = subject.decision;
    decision.reasonCode = kNarrative;
    decision.reasonText.GenerateString(kNarrativeReason);
    decision.message.GenerateString(messageNumber, subject.facts.signerList);
    Journal(subject.journal, decision.message);
    return Decide(subject, kStatusFailed);
}

Outcome CheckProfile(RuleCase& subject)
{
    Show(subject, "CHECK PROFIL RULE-", kRuler);
    if (subject.rule.profile == kSingleSignature && subject.facts.signerCount > 1)
    {
        return RefuseProfile(subject, "PROFIL MISMATCH", kProfileMismatch);
    }
    // Distributed signatures arrive one by one: the second may still come.
    if (subject.rule.profile == kDoubleSignature && subject.facts.signerCount < 2 &&
        !subject.facts.veu)
    {
        return RefuseProfile(subject,
                             "DOUBLE SIGNATURE EXIG\xC9"
                             "E",
                             kDoubleRequired);
    }
    return Outcome::GoOn;
}

void DescribeOneHolder(RuleCase& subject, unsigned int messageNumber, const holderSlot& holder,
                       double shown)
{
    subject.decision.reasonText.GenerateString(messageNumber, holder.lastName, holder.firstName,
                                               holder.certificateName, shown, kNoCurrency,
                                               subject.rule.amount, kNoCurrency);
}

// Writes the reason text for the holders found. The two-holder texts are always about the file's
// total; `shownForOne` is the amount that the one-holder text names.
void DescribeHolders(RuleCase& subject, unsigned int twoHolders, unsigned int oneHolder,
                     double shownForOne)
{
    const holderSlot& first = subject.rule.holder1;
    const holderSlot& second = subject.rule.holder2;
    if (subject.found1 == 1 && subject.found2 == 1)
    {
        subject.decision.reasonText.GenerateString(
            twoHolders, first.lastName, first.firstName, first.certificateName, second.lastName,
            second.firstName, second.certificateName, subject.facts.totalAmount, kNoCurrency,
            subject.rule.amount, kNoCurrency);
    }
    else if (subject.found1 == 1)
    {
        DescribeOneHolder(subject, oneHolder, first, shownForOne);
    }
    else if (subject.found2 == 1)
    {
        DescribeOneHolder(subject, oneHolder, second, shownForOne);
    }
}

Outcome RefuseAmount(RuleCase& subject, const char* label, unsigned int twoHolders,
                     unsigned int oneHolder)
{
    ruleSign& decision = subject.decision;
    decision.reasonCode = kAmountReason;
    // Shows the file's total whatever was compared, on purpose: the text is about the file.
    DescribeHolders(subject, twoHolders, oneHolder, subject.facts.totalAmount);
    TraceValueUTF8(subject.Trace(), label, decision.reasonText.SafeGetString());
    Journal(subject.journal, decision.reasonText);
    return Decide(subject, kStatusFailed);
}

Outcome CheckAmount(RuleCase& subject)
{
    Show(subject, "CHECK AMOUNT RULE-", kRuler);
    const cuidRule& rule = subject.rule;
    if (rule.tlevel == kTotalLevel && subject.facts.totalAmount > rule.amount)
    {
        return RefuseAmount(subject, "#RULE2 FAILED", kTotalAboveLimitTwo, kTotalAboveLimitOne);
    }
    if (rule.tlevel == kLargestOrderLevel && subject.facts.maxOrderAmount > rule.amount)
    {
        return RefuseAmount(subject, "#RULE3 FAILED", kOrderAboveLimitTwo, kOrderAboveLimitOne);
    }
    return Outcome::GoOn;
}

Outcome Succeed(RuleCase& subject)
{
    if (subject.rule.tlevel == kLargestOrderLevel)
    {
        DescribeHolders(subject, kAcceptedTwo, kOrderAcceptedOne, subject.facts.maxOrderAmount);
    }
    else
    {
        DescribeHolders(subject, kAcceptedTwo, kTotalAcceptedOne, subject.facts.totalAmount);
    }
    const TSimpleStringW& text = subject.decision.reasonText;
    TraceValueUTF8(subject.Trace(), "#RULE SUCCEEDDED", text.SafeGetString());
    Journal(subject.journal, text);
    return Decide(subject, kStatusSuccess);
}

using Check = Outcome (*)(RuleCase& subject);

// The order is behaviour: a blocked holder is named before any count, profile or amount, because
// it is the graver reason. The last one always decides.
constexpr Check kChecks[] = {
    CheckActive,     CheckAllHolders,      FindHolders, CheckSameCertificate,
    CheckOpposition, WarnOfTooManySigners, CheckAlone,  CheckBothHolders,
    CheckProfile,    CheckAmount,          Succeed,
};

void EvaluateRule(RuleCase& subject, TArray<ruleSign>& decisions)
{
    for (const Check check : kChecks)
    {
        const Outcome outcome = check(subject);
        if (outcome == Outcome::Recorded)
        {
            decisions.AddFilled([&](ruleSign& kept) { kept = std::move(subject.decision); });
        }
        if (outcome != Outcome::GoOn)
        {
            return;
        }
    }
}

} // namespace

void EvaluateRules(const SigningFacts& facts, TArray<cuidRule>& rules, TArray<ruleSign>& decisions,
                   TSimpleStringW& journal)
{
    TArray<signerInfo> working(facts.signerCount);
    for (int i = 0; i < facts.signerCount; ++i)
    {
        working.Add(*facts.signers.GetAt(i));
    }
    for (int i = 0; i < rules.GetCount(); ++i)
    {
        cuidRule& rule = *rules.GetAt(i);
        RuleCase subject{facts, rule, working, journal, ruleSign(), 0, 0};
        subject.decision.cuid = rule.cuid;
        subject.decision.controlType = rule.tlevel;
        TraceNumberedSection(facts.directory.trace, "CHECK CONTRACTS RULE #%d", i);
        Show(subject, "CUID Rule", rule.cuid);
        EvaluateRule(subject, decisions);
    }
}

void Journal(TSimpleStringW& journal, const TSimpleStringW& text)
{
    journal += text;
    journal += L"\r\n";
}

} // namespace rules
