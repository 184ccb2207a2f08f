// Defects planted in random rule books: each is found, and every witness of every finding decides
// on the database as it was told. SIGNUTILS_LINTS and SIGNUTILS_MAP_SEED choose how often and
// which.

#include "host/authority/lint.h"
#include "host/authority/rule_lines.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/random_bank.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kRoundsOfTheSuite = 1;
constexpr std::uint64_t kSeedOfTheSuite = 20260402;
constexpr const char* kToday = "2026-03-29";

using rulebook::Rule;
using rulebook::RuleBook;

/// A small random book whose one contract is active and not open to all; two holders beside it who
/// stand in no rule.
RuleBook SoundBook(std::mt19937_64& random)
{
    RuleBook book = RandomBank(random);
    book.contracts.resize(1);
    rulebook::Contract& contract = book.contracts.front();
    contract.rules.resize(std::min<std::size_t>(contract.rules.size(), 1));
    contract.terms.front().allHolders = 0;
    contract.terms.front().opposition = "0";
    for (const char* const huid : {"X1", "X2"})
    {
        book.holders.push_back(
            {huid,
             std::nullopt,
             "First",
             huid,
             "0",
             {{std::string(huid) + " certificate", std::nullopt, std::nullopt}}});
    }
    return book;
}

void Add(RuleBook& book, const Rule& rule)
{
    book.contracts.front().rules.push_back(rule);
}

void Profile(RuleBook& book, std::int64_t profile)
{
    book.contracts.front().terms.front().profile = profile;
}

const Rule kAloneByX1 = {"X1", std::nullopt, 1, "1000.00", 0};

struct Defect
{
    const char* code;
    void (*plant)(RuleBook& book);
};

void PrintTo(const Defect& defect, std::ostream* stream)
{
    *stream << defect.code;
}

const Defect kDefects[] = {
    {"anyone-may-sign",
     [](RuleBook& book)
     {
         Add(book, kAloneByX1);
         book.contracts.front().terms.front().allHolders = 1;
     }},
    {"nobody-satisfies",
     [](RuleBook& book)
     {
         Add(book, kAloneByX1);
         book.contracts.front().terms.front().opposition = "1";
     }},
    {"no-limit",
     [](RuleBook& book) {
         Add(book, {"X1", std::nullopt, 1, "1000.00", 2});
     }},
    {"pair-by-one",
     [](RuleBook& book)
     {
         Profile(book, 2);
         Add(book, {"X1", "X2", 0, "1000.00", 0});
     }},
    {"limit-vetoed",
     [](RuleBook& book)
     {
         Add(book, kAloneByX1);
         Add(book, {"X1", std::nullopt, 1, "2000.00", 0});
     }},
    {"second-refuses",
     [](RuleBook& book)
     {
         Profile(book, 0);
         Add(book, kAloneByX1);
     }},
    {"never-decides",
     [](RuleBook& book) {
         Add(book, {std::nullopt, std::nullopt, 1, "1000.00", 0});
     }},
    {"no-certificate",
     [](RuleBook& book)
     {
         book.holders.back().certificates.clear();
         Add(book, {"X1", "X2", 0, "1000.00", 0});
     }},
    {"expired-certificate",
     [](RuleBook& book)
     {
         book.holders[book.holders.size() - 2].certificates.front().expires = "2001-12-31";
         Add(book, kAloneByX1);
     }},
    {"reason-by-order",
     [](RuleBook& book)
     {
         Profile(book, 0);
         book.holders.back().opposition = "1";
         Add(book, kAloneByX1);
         Add(book, {"X2", std::nullopt, 1, "1000.00", 0});
     }},
};

class PlantedDefects : public BankWithMaps, public testing::WithParamInterface<Defect>
{
protected:
    /// Puts the book there that a witness was judged by. False where it was the rules in reverse.
    bool HoldWhatJudged(const authority::Witness& witness, const RuleBook& book)
    {
        std::size_t number = 0;
        if (std::sscanf(witness.judgedBy.c_str(), "rule %zu of", &number) == 1)
        {
            Hold(authority::BookOfOneRule(book, {RandomBankKey(), 1}, kRandomContract, number));
            return true;
        }
        Hold(book);
        return witness.judgedBy.empty();
    }

    void ExpectToHold(const authority::Finding& finding, const RuleBook& book)
    {
        EXPECT_FALSE(finding.witnesses.empty()) << finding.code;
        for (const authority::Witness& witness : finding.witnesses)
        {
            if (HoldWhatJudged(witness, book))
            {
                EXPECT_EQ(Verdict(witness.order.signers, witness.order.total, witness.order.largest,
                                  witness.order.isDistributed),
                          witness.decision.verdict)
                    << finding.code << ": " << finding.text;
            }
        }
    }
};

TEST_P(PlantedDefects, AreFoundAndEveryWitnessHolds)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfTheSuite));
    for (std::uint64_t left = SettingOr("SIGNUTILS_LINTS", kRoundsOfTheSuite); left > 0; --left)
    {
        RuleBook book = SoundBook(random);
        GetParam().plant(book);
        Hold(book);
        scratch::Copy copy(m_source, m_connection, book);
        std::size_t judged = 0;

        const auto findings = authority::Lint(
            copy, {book, kRandomContract, {RandomBankKey(), 1}, false, kToday}, judged);

        const bool isFound =
            std::any_of(findings.begin(), findings.end(),
                        [](const auto& finding) { return finding.code == GetParam().code; });
        EXPECT_TRUE(isFound) << left << " left";
        EXPECT_GT(judged, 0U);
        for (const authority::Finding& finding : findings)
        {
            ExpectToHold(finding, book);
        }
    }
}

std::string NameOf(const testing::TestParamInfo<Defect>& info)
{
    std::string name;
    bool isStart = true;
    for (const char letter : std::string(info.param.code))
    {
        if (letter != '-')
        {
            name += isStart ? static_cast<char>(letter - 'a' + 'A') : letter;
        }
        isStart = letter == '-';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Codes, PlantedDefects, testing::ValuesIn(kDefects), NameOf);

} // namespace
} // namespace testing_support
