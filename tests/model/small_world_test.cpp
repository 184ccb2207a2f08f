// Every rule of the small world in every environment, and every pair of rules that can be told
// apart there, through the rules' own functions. SIGNUTILS_SMALL_WORLD_STRIDE (1: all) and
// SIGNUTILS_SMALL_WORLD_OFFSET choose the environments.

#include "rules/check_signatures.h"
#include "rules/rule_evaluation.h"
#include "rules/verdict.h"
#include "tests/model/memory_lookups.h"
#include "tests/model/plain_texts.h"
#include "tests/model/settings.h"
#include "tests/model/small_world.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <cwchar>
#include <iostream>
#include <map>

namespace
{

using model::Text;

constexpr std::size_t kStrideOfTheSuite = 97;
constexpr int kGrowBy = 2;

/// Everything that one run of the rules tells, in one text.
struct Findings
{
    Text text;

    void Add(const Text& part) { text += part + L"|"; }
    void AddDecision(int status, const Text& code, const Text& reason, const Text& message)
    {
        Add(L"\n" + std::to_wstring(status));
        Add(code);
        Add(reason);
        Add(message);
    }
    void AddVerdict(std::uint32_t verdict, const Text& code, const Text& reason)
    {
        Add(L"\n" + std::to_wstring(verdict));
        Add(code);
        Add(reason);
    }
};

cuidRule LibraryRule(const model::Rule& rule)
{
    cuidRule record{};
    std::strcpy(record.cuid, model::NarrowOf(rule.cuid).c_str());
    std::strcpy(record.holder1.huid, model::NarrowOf(rule.huid1).c_str());
    std::strcpy(record.holder2.huid, model::NarrowOf(rule.huid2).c_str());
    record.active = rule.active ? 1 : 0;
    record.allHolders = rule.allHolders ? 1 : 0;
    record.alone = rule.alone ? 1 : 0;
    record.amount = rule.limit;
    record.tlevel = rule.tlevel;
    record.profile = rule.profile;
    return record;
}

Text LibraryFindings(const model::Environment& environment, const TArray<signerInfo>& signers,
                     const std::vector<model::Rule>& given)
{
    TArray<cuidRule> list(kGrowBy);
    for (const model::Rule& rule : given)
    {
        list.Add(LibraryRule(rule));
    }
    const model::Session& session = environment.session;
    const rules::SigningFacts facts = {
        {nullptr, nullptr}, signers,       signers.GetCount(), session.calls[0].signers.c_str(),
        session.veu,        session.total, session.largest};
    TArray<ruleSign> decisions(kGrowBy);
    TSimpleStringW journal;
    rules::EvaluateRules(facts, list, decisions, journal);

    Findings findings;
    for (int index = 0; index < decisions.GetCount(); ++index)
    {
        const ruleSign& one = *decisions.GetAt(index);
        findings.AddDecision(one.status, model::WideOf(one.reasonCode.SafeGetString()),
                             one.reasonText.SafeGetString(), one.message.SafeGetString());
        for (const signerInfo* const signer : {&one.signer1, &one.signer2})
        {
            findings.Add(signer->certificate.SafeGetString());
            findings.Add(signer->lastName.SafeGetString());
            findings.Add(signer->firstName.SafeGetString());
        }
        findings.Add(std::to_wstring(one.controlType));
    }
    TSimpleString code("kept");
    TSimpleStringW reason(L"kept");
    const std::uint32_t verdict = decisions.GetCount() == 0
                                      ? rules::kVerdictNoRule
                                      : rules::ReduceDecisions(decisions, code, reason);
    findings.AddVerdict(verdict, model::WideOf(code.SafeGetString()), reason.SafeGetString());
    findings.Add(journal.SafeGetString());
    return findings.text;
}

Text ModelFindings(const model::Environment& environment, const std::vector<model::Signer>& signers,
                   const std::vector<model::Rule>& given)
{
    const model::Session& session = environment.session;
    const model::Case subject{session, signers, session.calls[0].signers, session.total,
                              session.largest};
    model::Account account;
    const auto decisions = model::Judge(environment.tables, given, subject, account);
    Findings findings;
    for (const model::Decision& one : decisions)
    {
        findings.AddDecision(one.failed ? 2 : 1, one.reasonCode, one.reasonText, one.message);
        for (const model::Signer* const signer : {&one.signer1, &one.signer2})
        {
            findings.Add(signer->certificate);
            findings.Add(signer->lastName);
            findings.Add(signer->firstName);
        }
        findings.Add(std::to_wstring(one.controlType));
    }
    Text code = L"kept";
    Text reason = L"kept";
    const std::uint32_t verdict = model::VerdictOf(decisions, code, reason);
    findings.AddVerdict(verdict, code, reason);
    findings.Add(account.journal);
    return findings.text;
}

std::string Described(std::size_t environment, const std::vector<std::size_t>& given)
{
    std::string text = "environment " + std::to_string(environment);
    for (const std::size_t rule : given)
    {
        text += ", rule " + std::to_string(rule);
    }
    return text;
}

/// One environment with all its cells and pairs.
class Table
{
public:
    explicit Table(std::size_t index)
        : m_index(index), m_environment(model::EnvironmentAt(index)),
          m_signers(model::SignersOf(m_environment)), m_librarySigners(kGrowBy)
    {
        for (const model::Signer& signer : m_signers)
        {
            signerInfo entry;
            entry.certificate = signer.certificate.c_str();
            m_librarySigners.Add(entry);
        }
    }

    void JudgeSingles()
    {
        for (std::size_t rule = 0; rule < model::RuleCount(); ++rule)
        {
            m_oneOfEach.emplace(Judge({rule}), rule);
        }
    }

    std::size_t JudgePairs()
    {
        for (const auto& [result, first] : m_oneOfEach)
        {
            for (const auto& [other, second] : m_oneOfEach)
            {
                Judge({first, second});
            }
        }
        return m_oneOfEach.size() * m_oneOfEach.size();
    }

private:
    Text Judge(const std::vector<std::size_t>& numbers)
    {
        std::vector<model::Rule> given;
        for (const std::size_t number : numbers)
        {
            given.push_back(model::RuleAt(number));
        }
        model::AnswerLookupsFrom(m_environment.tables);
        Text told = ModelFindings(m_environment, m_signers, given);
        const Text seen = LibraryFindings(m_environment, m_librarySigners, given);
        if (seen != told)
        {
            ADD_FAILURE() << Described(m_index, numbers) << "\nlibrary: " << model::Utf8Of(seen)
                          << "\nmodel: " << model::Utf8Of(told);
        }
        return told;
    }

    std::size_t m_index;
    model::Environment m_environment;
    std::vector<model::Signer> m_signers;
    TArray<signerInfo> m_librarySigners;
    std::map<Text, std::size_t> m_oneOfEach; ///< a rule for each distinct result
};

TEST(SmallWorld, EveryRuleAndEveryPairIsJudgedAsTheModelDoes)
{
    const std::size_t stride = model::Setting("SIGNUTILS_SMALL_WORLD_STRIDE", kStrideOfTheSuite);
    const std::size_t offset = model::Setting("SIGNUTILS_SMALL_WORLD_OFFSET", 0);
    std::size_t environments = 0;
    std::size_t pairs = 0;
    const auto started = std::chrono::steady_clock::now();
    for (std::size_t index = offset; index < model::EnvironmentCount(); index += stride)
    {
        Table table(index);
        table.JudgeSingles();
        pairs += table.JudgePairs();
        ++environments;
        ASSERT_FALSE(HasFailure());
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - started;
    ASSERT_GT(environments, 0U);
    std::cout << "small world: " << environments << " of " << model::EnvironmentCount()
              << " environments, " << environments * model::RuleCount() << " cells, " << pairs
              << " pairs, " << static_cast<int>(seconds.count()) << " seconds\n";
}

} // namespace
