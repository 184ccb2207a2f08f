// Maps of random contracts against the library itself, asked on the database that they are about.
// SIGNUTILS_MAPS and SIGNUTILS_MAP_SEED choose how many contracts and which.

#include "host/authority/contract_maps.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/map_points.h"
#include "tests/host/authority/random_bank.h"

#include <algorithm>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kContractsOfTheSuite = 6;
constexpr std::uint64_t kSeedOfMaps = 20260329;
constexpr std::uint64_t kPointsOfAContract = 40;

class RandomMaps : public BankWithMaps
{
protected:
    void Make(std::mt19937_64& random)
    {
        Hold(RandomBank(random));
        m_maps = authority::MapContract(m_source, m_connection, kRandomContract);
    }

    unsigned long Ask(const authority::AuthorityMap& map, const std::vector<std::string>& signers,
                      const authority::Amounts& amounts, bool isDistributed) const
    {
        return Verdict(signers, amounts.total, amounts.largest, isDistributed, map.kind.type);
    }

    authority::ContractMaps m_maps;
};

TEST_F(RandomMaps, HoldAtRandomPointsOfTheirCells)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfMaps));
    const std::uint64_t points = SettingOr("SIGNUTILS_MAP_POINTS", kPointsOfAContract);
    std::uint64_t judged = 0;
    for (std::uint64_t left = SettingOr("SIGNUTILS_MAPS", kContractsOfTheSuite); left > 0; --left)
    {
        Make(random);
        const std::size_t before = m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").size();
        EXPECT_EQ(before, 0U) << "making the map wrote history rows";
        for (std::uint64_t point = 0; point < points; ++point)
        {
            const MapPoint at = AnyPointOf(random, m_maps.maps[random() % m_maps.maps.size()]);
            const scratch::Decision decision = Decide(at.order, at.map.kind.type);
            ASSERT_EQ((authority::Verdict{decision.verdict, decision.reasonCode}), at.told)
                << at << ", " << left << " left";
            ++judged;
        }
    }
    Count("points", judged);
}

/// What the pairs among the parties say of them all, by the rows of the map.
unsigned int ByPairs(const authority::AuthorityMap& map, const std::vector<std::size_t>& parties,
                     std::size_t cell, bool isDistributed)
{
    std::vector<unsigned int> verdicts;
    for (const authority::Row& row : map.rows)
    {
        if (row.parties.size() == 2 &&
            std::includes(parties.begin(), parties.end(), row.parties.begin(), row.parties.end()))
        {
            verdicts.push_back((isDistributed ? row.distributed : row.direct)[cell].number);
        }
    }
    return authority::VerdictOfPairs(verdicts);
}

TEST_F(RandomMaps, TellOfLargerSetsWhatTheLibraryDecides)
{
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfMaps) + 1);
    std::uint64_t asked = 0;
    const std::uint64_t contracts = SettingOr("SIGNUTILS_MAPS", kContractsOfTheSuite);
    // A few contracts may have no three parties among them; then more are taken.
    for (std::uint64_t made = 0; made < contracts || asked == 0; ++made)
    {
        Make(random);
        for (const authority::AuthorityMap& map : m_maps.maps)
        {
            std::vector<std::size_t> parties;
            std::vector<std::string> signers;
            for (std::size_t index = 0; index < map.parties.size(); ++index)
            {
                if (random() % 4 != 0)
                {
                    parties.push_back(index);
                    signers.push_back(map.parties[index].names.front());
                }
            }
            if (parties.size() < 3 || !map.pairsDecide)
            {
                continue;
            }
            for (std::size_t cell = 0; cell < map.cells.size(); ++cell)
            {
                for (const bool isDistributed : {false, true})
                {
                    const auto amounts = PointOf(random, map.cells[cell]);
                    ASSERT_EQ(Ask(map, signers, amounts, isDistributed),
                              ByPairs(map, parties, cell, isDistributed))
                        << signers.size() << " signers, " << authority::InWords(map.cells[cell]);
                    ++asked;
                }
            }
        }
    }
    Count("larger_sets", asked);
}

} // namespace
} // namespace testing_support
