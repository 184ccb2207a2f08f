// The change of effect against the library itself: orders by anybody and of any amount come out
// otherwise exactly where the effect says so.

#include "database/cdatabase.h"
#include "host/authority/change_of_effect.h"
#include "host/scratch/copy.h"
#include "host/scratch/judge.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace testing_support
{
namespace
{

const rulebook::ContractKey kKey = {"P", "S", "C", 9, 1};
const std::vector<std::string> kNames = {"Ana", "Ben", "Cy", "Dee", "Eve", "a stranger"};
constexpr int kChanges = 8;
constexpr int kOrders = 40;

/// Small worlds: three holders, one contract, a few rules.
class RandomWorlds
{
public:
    std::size_t Below(std::size_t end) { return m_random() % end; }

    rulebook::RuleBook Next()
    {
        rulebook::RuleBook book;
        for (const char* const huid : {"H1", "H2", "H3"})
        {
            rulebook::Holder holder = {huid, {}, huid, {}, Below(5) == 0 ? "1" : "0", {}};
            // Each name but the stranger's may be anybody's, or nobody's.
            for (std::size_t name = 0; name + 1 < kNames.size(); ++name)
            {
                if (Below(4) == 0)
                {
                    holder.certificates.push_back({kNames[name], {}, {}});
                }
            }
            book.holders.push_back(holder);
        }
        rulebook::Contract contract;
        contract.cuid = "C1";
        contract.entry = rulebook::ContractEntry{kKey, 0, "0"};
        contract.terms = {
            {kKey, 1, static_cast<std::int64_t>(Below(3)), Below(8) == 0 ? 1 : 0, "0"}};
        for (std::size_t count = 1 + Below(3); count > 0; --count)
        {
            contract.rules.push_back(NextRule());
        }
        book.contracts = {contract};
        return book;
    }

private:
    rulebook::Rule NextRule()
    {
        const auto holder = [this] { return "H" + std::to_string(1 + Below(3)); };
        const char* const limits[] = {"10.00", "20.00", "30.00"};
        return {holder(), holder(), static_cast<std::int64_t>(Below(2)), limits[Below(3)],
                static_cast<std::int64_t>(Below(2))};
    }

    std::mt19937 m_random{43};
};

bool IsWithin(double amount, const authority::Band& band)
{
    return (!band.above || amount > *band.above) && (!band.upTo || amount <= *band.upTo);
}

bool IsSame(std::vector<std::string> left, std::vector<std::string> right)
{
    std::sort(left.begin(), left.end());
    std::sort(right.begin(), right.end());
    return left == right;
}

/// What the effect says of one order: both outcomes, or nothing for one that stays as it is.
class Said
{
public:
    explicit Said(const authority::ChangeOfEffect& effect) : m_effect(effect) {}

    std::pair<unsigned int, unsigned int> Of(const scratch::Order& order, bool& isListed) const
    {
        isListed = false;
        for (const authority::KindEffect& kind : m_effect.kinds)
        {
            if (kind.map.kind.type != 1)
            {
                continue;
            }
            const std::string label = LabelOf(kind.map, order.signers);
            for (const authority::Redecision& each : kind.redecisions)
            {
                const bool isMode = each.veu == "any" || (each.veu == "on") == order.isDistributed;
                if (!label.empty() && each.signers == label && isMode &&
                    IsWithin(order.total, each.cell.total) &&
                    IsWithin(order.largest, each.cell.largest))
                {
                    isListed = true;
                    return {each.before, each.after};
                }
            }
        }
        return {};
    }

private:
    // The row of the parties that have these names; empty when no row of theirs is listed.
    static std::string LabelOf(const authority::AuthorityMap& map,
                               const std::vector<std::string>& signers)
    {
        std::vector<std::string> wanted;
        for (const std::string& signer : signers)
        {
            wanted.push_back(PartyOf(map, signer));
        }
        for (const authority::Row& row : map.rows)
        {
            std::vector<std::string> parties;
            for (const std::size_t party : row.parties)
            {
                parties.push_back(map.parties[party].label);
            }
            if (IsSame(parties, wanted))
            {
                return row.label;
            }
        }
        return {};
    }

    static std::string PartyOf(const authority::AuthorityMap& map, const std::string& signer)
    {
        for (const authority::Party& party : map.parties)
        {
            if (std::find(party.names.begin(), party.names.end(), signer) != party.names.end())
            {
                return party.label;
            }
        }
        return map.parties.back().label; // anyone else
    }

    const authority::ChangeOfEffect& m_effect;
};

std::vector<std::string> RandomSigners(RandomWorlds& worlds)
{
    std::vector<std::string> signers = kNames;
    for (std::size_t count = signers.size(); count > 1; --count)
    {
        std::swap(signers[count - 1], signers[worlds.Below(count)]);
    }
    signers.resize(worlds.Below(3));
    return signers;
}

TEST(EffectPoints, OrdersComeOutOtherwiseExactlyWhereTheEffectSaysSo)
{
    TestDatabase bank;
    CDatabase database;
    database.OpenEx(bank.ConnexionString().c_str(),
                    CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    const host::Connection connection = {bank.ConnexionString(), bank.ConnexionString(),
                                         "option --db"};
    RandomWorlds worlds;
    int redecided = 0;
    for (int change = 0; change < kChanges; ++change)
    {
        const rulebook::RuleBook before = worlds.Next();
        const rulebook::RuleBook after = worlds.Next();
        const authority::ChangeOfEffect effect = authority::EffectOf(
            database, connection, before, rulebook::Compare(before, after, true), 20);
        const scratch::Copy copyBefore(database, connection, before);
        const scratch::Copy copyAfter(database, connection, after);
        scratch::Judge judgeBefore(copyBefore, {kKey, 1});
        scratch::Judge judgeAfter(copyAfter, {kKey, 1});
        for (int count = 0; count < kOrders; ++count)
        {
            const double largest = static_cast<double>(worlds.Below(4001)) / 100;
            const scratch::Order order = {RandomSigners(worlds),
                                          largest + static_cast<double>(worlds.Below(1001)) / 100,
                                          largest, worlds.Below(2) == 0};
            const unsigned int wasBefore = judgeBefore.Ask(order).verdict;
            const unsigned int isAfter = judgeAfter.Ask(order).verdict;
            bool isListed = false;

            const auto said = Said(effect).Of(order, isListed);

            ASSERT_EQ(isListed, wasBefore != isAfter)
                << "change " << change << ", order " << count << ", " << order.signers.size()
                << " signers, total " << order.total << ", largest " << order.largest;
            if (isListed)
            {
                EXPECT_EQ(said, std::pair(wasBefore, isAfter));
                ++redecided;
            }
        }
    }
    EXPECT_GT(redecided, kChanges); // else nothing was compared
}

} // namespace
} // namespace testing_support
