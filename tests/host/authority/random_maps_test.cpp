// Maps of random contracts against the library itself, asked on the database that they are about.
// SIGNUTILS_MAPS and SIGNUTILS_MAP_SEED choose how many contracts and which.

#include "host/authority/contract_maps.h"
#include "tests/host/authority/bank_with_maps.h"
#include "tests/host/authority/random_bank.h"

#include <algorithm>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kContractsOfTheSuite = 6;
constexpr std::uint64_t kSeedOfTheSuite = 20260329;
constexpr int kPointsOfAContract = 40;

/// A point between the least and the greatest amount of a cell, often at one of them.
double Between(std::mt19937_64& random, double least, double greatest)
{
    switch (random() % 4)
    {
    case 0:
        return least;
    case 1:
        return greatest;
    default:
        return std::min(greatest, least + (std::min(greatest, least + 1e7) - least) *
                                              std::generate_canonical<double, 53>(random));
    }
}

authority::Amounts PointOf(std::mt19937_64& random, const authority::Cell& cell)
{
    const authority::Amounts least = authority::LeastOf(cell);
    const authority::Amounts greatest = authority::GreatestOf(cell);
    const double largest = Between(random, least.largest, greatest.largest);
    return {Between(random, std::max(least.total, largest), greatest.total), largest};
}

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
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfTheSuite));
    for (std::uint64_t left = SettingOr("SIGNUTILS_MAPS", kContractsOfTheSuite); left > 0; --left)
    {
        Make(random);
        const std::size_t before = m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").size();
        EXPECT_EQ(before, 0U) << "making the map wrote history rows";
        for (int point = 0; point < kPointsOfAContract; ++point)
        {
            const auto& map = m_maps.maps[random() % m_maps.maps.size()];
            const auto& row = map.rows[random() % map.rows.size()];
            const std::size_t cell = random() % map.cells.size();
            const bool isDistributed = random() % 2 == 0;
            const authority::Amounts amounts = PointOf(random, map.cells[cell]);

            const unsigned long verdict = Ask(map, row.signers, amounts, isDistributed);

            ASSERT_EQ(verdict, (isDistributed ? row.distributed : row.direct)[cell].number)
                << row.label << ", " << authority::InWords(map.cells[cell]) << ", total "
                << amounts.total << ", largest " << amounts.largest << ", " << left << " left";
        }
    }
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
    std::mt19937_64 random(SettingOr("SIGNUTILS_MAP_SEED", kSeedOfTheSuite) + 1);
    int asked = 0;
    for (std::uint64_t left = SettingOr("SIGNUTILS_MAPS", kContractsOfTheSuite); left > 0; --left)
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
    EXPECT_GT(asked, 0);
}

} // namespace
} // namespace testing_support
