// Remedies of random orders that were not accepted: each is accepted on the database changed so,
// and no part of it is. SIGNUTILS_REMEDIES and SIGNUTILS_MAP_SEED choose how many and which.

#include "host/authority/remedies.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/random_bank.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kOrdersOfTheSuite = 12;
constexpr std::uint64_t kSeedOfRemedies = 20260403;

using authority::Remedy;

/// The changes of a remedy one by one, each as a remedy of its own.
std::vector<Remedy> ChangesOf(const Remedy& remedy)
{
    std::vector<Remedy> changes;
    for (const std::string& signer : remedy.furtherSigners)
    {
        changes.emplace_back().furtherSigners = {signer};
    }
    if (remedy.totalAtMost)
    {
        changes.emplace_back().totalAtMost = remedy.totalAtMost;
    }
    if (remedy.largestAtMost)
    {
        changes.emplace_back().largestAtMost = remedy.largestAtMost;
    }
    for (const std::string& huid : remedy.freedHuids)
    {
        changes.emplace_back().freedHuids = {huid};
    }
    for (const std::string& cuid : remedy.activeContracts)
    {
        changes.emplace_back().activeContracts = {cuid};
    }
    return changes;
}

class Remedies : public BankWithMaps
{
protected:
    unsigned long VerdictWith(const rulebook::RuleBook& book, const scratch::Order& order,
                              const std::vector<Remedy>& changes)
    {
        rulebook::RuleBook changed = book;
        scratch::Order asked = order;
        for (const Remedy& change : changes)
        {
            changed = authority::Changed(std::move(changed), change);
            asked = authority::Changed(std::move(asked), change);
        }
        if (changed != m_held)
        {
            Hold(changed);
            m_held = std::move(changed);
        }
        return Verdict(asked.signers, asked.total, asked.largest, asked.isDistributed);
    }

    void ExpectToBeSmallest(const rulebook::RuleBook& book, const scratch::Order& order,
                            const Remedy& remedy)
    {
        const auto changes = ChangesOf(remedy);
        ASSERT_FALSE(changes.empty());
        EXPECT_EQ(VerdictWith(book, order, changes), scratch::kAccepted);
        for (std::size_t set = 0; set + 1 < (std::size_t{1} << changes.size()); ++set)
        {
            std::vector<Remedy> part;
            for (std::size_t place = 0; place < changes.size(); ++place)
            {
                if ((set >> place & 1) != 0)
                {
                    part.push_back(changes[place]);
                }
            }
            EXPECT_NE(VerdictWith(book, order, part), scratch::kAccepted)
                << part.size() << " of " << changes.size() << " changes are enough";
        }
    }

    rulebook::RuleBook m_held; ///< what the database holds
};

scratch::Order AnyOrder(std::mt19937_64& random, const rulebook::RuleBook& book)
{
    const auto parties = authority::PartiesOf(book);
    scratch::Order order;
    order.total = random() % 2 == 0 ? 900.0 : 6000.0;
    order.largest = order.total / static_cast<double>(1 + random() % 8);
    order.signers = {parties[random() % parties.size()].names.front()};
    order.isDistributed = random() % 3 == 0;
    return order;
}

TEST_F(Remedies, AreAcceptedAndNoPartOfThemIs)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfRemedies));
    std::size_t found = 0;
    std::uint64_t left = SettingOr("SIGNUTILS_REMEDIES", kOrdersOfTheSuite);
    while (left > 0)
    {
        const rulebook::RuleBook book = RandomBank(random);
        const scratch::Order order = AnyOrder(random, book);
        Hold(book);
        m_held = book;
        if (Verdict(order.signers, order.total, order.largest, order.isDistributed) ==
            scratch::kAccepted)
        {
            continue;
        }
        --left;
        scratch::Copy copy(m_source, m_connection, book);

        std::vector<Remedy> remedies;
        authority::FindRemedies(copy, {book, {RandomBankKey(), 1}, order}, remedies);

        for (const Remedy& remedy : remedies)
        {
            ExpectToBeSmallest(book, order, remedy);
            ++found;
        }
    }
    EXPECT_GT(found, 0U);
    Count("refusals", SettingOr("SIGNUTILS_REMEDIES", kOrdersOfTheSuite));
    Count("remedies", found);
}

TEST_F(Remedies, KeepTheGreatestAmountsThatAreAccepted)
{
    rulebook::RuleBook book;
    book.holders.push_back({"H1", std::nullopt, "Ana", "Ruiz", "0", {{"Ana Ruiz", {}, {}}}});
    book.contracts.emplace_back().cuid = kRandomContract;
    book.contracts.front().terms.push_back({RandomBankKey(), 1, 0, 0, "0"});
    for (const char* const limit : {"100.00", "5000.00"})
    {
        book.contracts.front().rules.push_back({"H1", std::nullopt, 1, limit, 0});
    }
    book.contracts.front().rules.push_back({"H1", std::nullopt, 1, "70.00", 1});
    Hold(book);
    scratch::Copy copy(m_source, m_connection, book);

    std::vector<Remedy> remedies;
    authority::FindRemedies(copy, {book, {RandomBankKey(), 1}, {{"Ana Ruiz"}, 9000.0, 80.0, false}},
                            remedies);

    ASSERT_EQ(remedies.size(), 1U);
    EXPECT_EQ(remedies.front().totalAtMost, 100.0);
    EXPECT_EQ(remedies.front().largestAtMost, 70.0);
}

} // namespace
} // namespace testing_support
