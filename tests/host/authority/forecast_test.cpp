// Forecasts of random distributed orders against the enumeration of everybody who could still sign.
// SIGNUTILS_FORECASTS and SIGNUTILS_MAP_SEED choose how many and which.

#include "host/authority/bands.h"
#include "host/authority/forecast.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/random_bank.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kForecastsOfTheSuite = 12;
constexpr std::uint64_t kSeedOfForecasts = 20260401;

using Signers = std::vector<std::string>;
using Labels = std::multiset<std::string>;

class Forecasts : public BankWithMaps
{
protected:
    /// The smallest sets of further parties with which the order is accepted both ways, by asking
    /// about every set of further names.
    std::set<Labels> Enumerated(const std::vector<authority::Party>& parties,
                                const scratch::Order& order) const
    {
        std::vector<std::pair<std::string, std::string>> free; // name and label
        for (const authority::Party& party : parties)
        {
            for (const std::string& name : party.names)
            {
                const auto& taken = order.signers;
                if (std::find(taken.begin(), taken.end(), name) == taken.end())
                {
                    free.emplace_back(name, party.label);
                }
            }
        }
        std::vector<Labels> complete;
        std::vector<std::size_t> completeSets;
        for (std::size_t set = 0; set < (std::size_t{1} << free.size()); ++set)
        {
            // Parts of a set come before it; one that holds a complete one is no smallest.
            if (std::any_of(completeSets.begin(), completeSets.end(),
                            [set](std::size_t each) { return (set & each) == each; }))
            {
                continue;
            }
            Signers signers = order.signers;
            Labels labels;
            for (std::size_t place = 0; place < free.size(); ++place)
            {
                if ((set >> place & 1) != 0)
                {
                    signers.push_back(free[place].first);
                    labels.insert(free[place].second);
                }
            }
            if (Verdict(signers, order.total, order.largest, false) == scratch::kAccepted &&
                Verdict(signers, order.total, order.largest, true) == scratch::kAccepted)
            {
                complete.push_back(labels);
                completeSets.push_back(set);
            }
        }
        return Smallest(complete);
    }

    static std::set<Labels> Smallest(const std::vector<Labels>& complete)
    {
        std::set<Labels> smallest;
        for (const Labels& each : complete)
        {
            const bool holdsAnother = std::any_of(
                complete.begin(), complete.end(),
                [&each](const Labels& other)
                {
                    return other.size() < each.size() &&
                           std::includes(each.begin(), each.end(), other.begin(), other.end());
                });
            if (!holdsAnother)
            {
                smallest.insert(each);
            }
        }
        return smallest;
    }
};

scratch::Order AnyOrder(std::mt19937_64& random, const std::vector<authority::Party>& parties)
{
    static const double amounts[] = {0.0, 900.0, 1000.0, 1234.56, 4000.0, 5000.0, 300000.0};
    scratch::Order order;
    order.total = amounts[random() % std::size(amounts)];
    order.largest = order.total / static_cast<double>(1 + random() % 3);
    const std::uint64_t count = random() % 3;
    for (std::uint64_t signer = 0; signer < count; ++signer)
    {
        const std::string& name = parties[random() % parties.size()].names.front();
        if (std::find(order.signers.begin(), order.signers.end(), name) == order.signers.end())
        {
            order.signers.push_back(name);
        }
    }
    return order;
}

TEST_F(Forecasts, AreWhatAskingAboutEverybodyGives)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfForecasts));
    std::uint64_t hopeful = 0;
    std::uint64_t left = SettingOr("SIGNUTILS_FORECASTS", kForecastsOfTheSuite);
    while (left > 0)
    {
        rulebook::RuleBook book = RandomBank(random);
        // Else most books are such that nobody can complete anything.
        book.contracts.front().terms.front().opposition = "0";
        book.contracts.front().rules.push_back({"H1", "H2", 0, "5000.00", 0});
        auto parties = authority::PartiesOf(book);
        const auto names = std::count_if(parties.begin(), parties.end(),
                                         [](const auto& party) { return party.isShared; });
        // Three strangers and each name of few holders are enough to ask about.
        if (names > 0 || parties.size() > 4)
        {
            continue;
        }
        --left;
        Hold(book);
        const scratch::Order order = AnyOrder(random, parties);
        const scratch::Copy copy(m_source, m_connection, book);
        scratch::Judge judge(copy, {RandomBankKey(), 1});

        const authority::Forecast forecast = authority::ForecastOf(judge, book, order);

        std::set<Labels> told;
        for (const authority::Completion& completion : forecast.completions)
        {
            Labels labels;
            for (const std::size_t party : completion.parties)
            {
                labels.insert(parties[party].label);
            }
            told.insert(labels);
        }
        if (forecast.isComplete)
        {
            told = {Labels()};
        }
        ASSERT_EQ(told, Enumerated(parties, order)) << left << " left";
        ASSERT_EQ(authority::CanBeCompleted(judge, book, order), !told.empty()) << left << " left";
        hopeful += told.empty() ? 0 : 1;
    }
    EXPECT_GT(hopeful, 0U);
    Count("forecasts", SettingOr("SIGNUTILS_FORECASTS", kForecastsOfTheSuite));
    Count("hopeful", hopeful);
}

} // namespace
} // namespace testing_support
