// Defects planted in random rule books: each is found, and every witness of every finding decides
// on the database as it was told. SIGNUTILS_LINTS and SIGNUTILS_MAP_SEED choose how often and
// which, SIGNUTILS_MAP_POINTS how many orders their maps are held against.

#include "host/authority/contract_maps.h"
#include "host/authority/lint.h"
#include "host/authority/rule_lines.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/map_points.h"
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
constexpr std::uint64_t kPointsOfTheSuite = 10;
constexpr std::uint64_t kSeedOfDefects = 20260402;
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

bool IsDecided(const authority::Witness& witness, unsigned int verdict)
{
    return witness.decision.verdict == verdict;
}

/// Whether the witnesses show what a finding of their code says, and not something else.
bool Show(const std::string& code, const std::vector<authority::Witness>& witnesses)
{
    const auto& first = witnesses.front();
    const auto& last = witnesses.back();
    if (code == "second-refuses")
    {
        return witnesses.size() == 2 && IsDecided(first, scratch::kAccepted) &&
               IsDecided(last, scratch::kRefused) && first.order.signers.size() == 1 &&
               last.order.signers.size() == 2;
    }
    if (code == "reason-by-order")
    {
        return witnesses.size() == 2 && IsDecided(first, scratch::kRefused) &&
               IsDecided(last, scratch::kRefused) &&
               first.decision.reasonCode != last.decision.reasonCode;
    }
    if (code == "anyone-may-sign" || code == "no-limit" || code == "pair-by-one")
    {
        return IsDecided(first, scratch::kAccepted);
    }
    if (code == "nobody-satisfies" || code == "no-certificate")
    {
        return !IsDecided(first, scratch::kAccepted);
    }
    if (code == "never-decides")
    {
        return IsDecided(first, scratch::kNoRule);
    }
    if (code == "expired-certificate")
    {
        return !IsDecided(first, scratch::kNoRule);
    }
    return code == "limit-vetoed" && IsDecided(first, scratch::kRefused);
}

class PlantedDefects : public BankWithMaps, public testing::WithParamInterface<Defect>
{
protected:
    /// Puts the book there that a witness was judged by.
    void HoldWhatJudged(const authority::Witness& witness, RuleBook book)
    {
        std::size_t number = 0;
        if (std::sscanf(witness.judgedBy.c_str(), "rule %zu of", &number) == 1)
        {
            book = authority::BookOfOneRule(book, {RandomBankKey(), 1}, kRandomContract, number);
        }
        else if (!witness.judgedBy.empty())
        {
            ASSERT_EQ(witness.judgedBy, "the rules in reverse order");
            auto& rules = book.contracts.front().rules;
            std::reverse(rules.begin(), rules.end());
        }
        Hold(book);
    }

    void ExpectToHold(const authority::Finding& finding, const RuleBook& book)
    {
        ASSERT_FALSE(finding.witnesses.empty()) << finding.code;
        EXPECT_TRUE(Show(finding.code, finding.witnesses)) << finding.code << ": " << finding.text;
        for (const authority::Witness& witness : finding.witnesses)
        {
            HoldWhatJudged(witness, book);
            EXPECT_EQ(Decide(witness.order), witness.decision)
                << finding.code << ": " << finding.text;
            ++m_witnesses;
        }
    }

    std::uint64_t m_witnesses = 0;
};

TEST_P(PlantedDefects, AreFoundAndEveryWitnessHolds)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfDefects));
    const std::uint64_t rounds = SettingOr("SIGNUTILS_LINTS", kRoundsOfTheSuite);
    std::uint64_t found = 0;
    std::uint64_t all = 0;
    for (std::uint64_t left = rounds; left > 0; --left)
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
        found += isFound ? 1 : 0;
        all += findings.size();
    }
    Count("planted", rounds);
    Count("found", found);
    Count("findings", all);
    Count("witnesses", m_witnesses);
}

TEST_P(PlantedDefects, StandInMapsThatHoldAtRandomPoints)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfDefects));
    const std::uint64_t points = SettingOr("SIGNUTILS_MAP_POINTS", kPointsOfTheSuite);
    std::uint64_t judged = 0;
    for (std::uint64_t left = SettingOr("SIGNUTILS_LINTS", kRoundsOfTheSuite); left > 0; --left)
    {
        RuleBook book = SoundBook(random);
        GetParam().plant(book);
        Hold(book);
        const auto maps = authority::MapContract(m_source, m_connection, kRandomContract).maps;
        for (std::uint64_t point = 0; point < points; ++point)
        {
            const MapPoint at = AnyPointOf(random, maps[random() % maps.size()]);
            const scratch::Decision decision = Decide(at.order, at.map.kind.type);
            ASSERT_EQ((authority::Verdict{decision.verdict, decision.reasonCode}), at.told)
                << at << ", " << left << " left";
            ++judged;
        }
    }
    Count("points", judged);
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
