#pragma once

#include "database/cdatabase.h"
#include "rules/rule_evaluation.h"
#include "tests/rules/message_text.h"
#include "tests/signers/trace_file.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

namespace testing_support
{

/// A rule that its holder signs alone, of up to 1000.00 in all.
inline cuidRule AloneRule(const char* holderId)
{
    cuidRule rule{};
    std::strcpy(rule.cuid, "C1");
    rule.active = 1;
    rule.alone = 1;
    rule.amount = 1000.0;
    std::strcpy(rule.holder1.huid, holderId);
    return rule;
}

/// A rule that two holders sign together, of up to 1000.00 in all.
inline cuidRule PairRule(const char* firstHolderId, const char* secondHolderId)
{
    cuidRule rule = AloneRule(firstHolderId);
    rule.alone = 0;
    rule.profile = 1;
    std::strcpy(rule.holder2.huid, secondHolderId);
    return rule;
}

/// Three holders, of whom H1 and H2 may sign, a session connection and a trace.
class EvaluationTest : public testing::Test
{
protected:
    EvaluationTest()
    {
        bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
            .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Bo Dahl"))
            .With(Holder(L"H3").Named(L"Cy", L"Noir").Certificate(L"Cy Noir").Blocked());
    }

    void SetUp() override
    {
        session.OpenEx(tables.ConnexionString().c_str(),
                       CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    void SignedBy(std::initializer_list<const wchar_t*> certificates)
    {
        for (const wchar_t* const certificate : certificates)
        {
            signerInfo signer;
            signer.certificate = certificate;
            signers.Add(signer);
            signerList += signerList.empty() ? L"" : L";";
            signerList += certificate;
        }
    }

    void Evaluate(std::initializer_list<cuidRule> lines) { Evaluate(lines, signers.GetCount()); }

    /// Judges the first `signerCount` signers.
    void Evaluate(std::initializer_list<cuidRule> lines, int signerCount)
    {
        for (const cuidRule& line : lines)
        {
            ruleLines.Add(line);
        }
        const rules::SigningFacts facts = {
            {&session, trace.Handle(), nullptr},
            signers,
            signerCount,
            signerList.c_str(),
            veu,
            total,
            largest,
        };
        rules::EvaluateRules(facts, ruleLines, decisions, journalText);
    }

    /// The one decision, which must be there.
    const ruleSign& Only() const
    {
        static const ruleSign none;
        EXPECT_EQ(decisions.GetCount(), 1);
        return decisions.GetCount() == 1 ? *decisions.GetAt(0) : none;
    }

    std::wstring Journalled() const { return journalText.SafeGetString(); }
    std::wstring Reason() const { return Only().reasonText.SafeGetString(); }
    std::wstring Message() const { return Only().message.SafeGetString(); }
    std::string Code() const { return Only().reasonCode.SafeGetString(); }

    TestDatabase tables;
    Bank bank{tables};
    CDatabase session;
    TraceFile trace;
    TArray<signerInfo> signers{128};
    TArray<cuidRule> ruleLines{128};
    TArray<ruleSign> decisions{128};
    TSimpleStringW journalText;
    std::wstring signerList;
    bool veu = false;
    double total = 100.0;
    double largest = 60.0;
};

} // namespace testing_support
