// Maps of random contracts against the library itself, asked on the database that they are about.
// SIGNUTILS_MAPS and SIGNUTILS_MAP_SEED choose how many contracts and which.

#include "database/cdatabase.h"
#include "host/authority/contract_maps.h"
#include "host/rulebook/rule_book_writer.h"
#include "signutils/signutils.h"
#include "support/codepage.h"
#include "tests/host/authority/random_bank.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace testing_support
{
namespace
{

constexpr std::uint64_t kContractsOfTheSuite = 6;
constexpr std::uint64_t kSeedOfTheSuite = 20260329;
constexpr int kPointsOfAContract = 40;

std::uint64_t Setting(const char* name, std::uint64_t usual)
{
    const char* const text = std::getenv(name);
    return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

unsigned long Asked(const std::string& connection, const std::vector<std::string>& signers,
                    double total, double largest, bool isDistributed, std::int64_t type)
{
    std::wstring list;
    for (const std::string& signer : signers)
    {
        list += support::WideFromUtf8(signer) + L";";
    }
    const rulebook::ContractKey key = RandomBankKey();
    SignUtils session;
    session.SetConnexionString(connection.c_str());
    session.SetContractInfo(static_cast<unsigned long>(type), 9, key.vpname.c_str(),
                            key.vfname.c_str(), key.vcname.c_str(), 1, "");
    session.SetAmountInfo(total, largest, "EUR");
    if (isDistributed)
    {
        session.SetModeVeu();
    }
    const unsigned long verdict = session.CheckSignRules("order.xml", list.c_str());
    EXPECT_TRUE(session.GetLastCheck().ran);
    return verdict;
}

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

/// One random bank in a database of its own, and its maps.
class RandomMaps : public testing::Test
{
protected:
    RandomMaps() : m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()) {}

    void Make(std::mt19937_64& random)
    {
        m_connection.text = m_database.ConnexionString();
        m_connection.shown = "the database of the test";
        m_connection.origin = "option --db";
        m_source.OpenEx(m_connection.text.c_str(),
                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        for (const char* const table : {"SSR_HOLDER", "SSR_HOLDERID", "SSR_CONTRACT",
                                        "SSR_CONTRACTCUR", "SSR_CONTRACTRULE", "HST_SIGNRULES"})
        {
            m_source.ExecuteSQLW((L"DELETE FROM " + support::WideFromNarrow(table)).c_str());
        }
        rulebook::WriteRuleBook(m_source, RandomBank(random));
        m_maps = authority::MapContract(m_source, m_connection, kRandomContract);
    }

    unsigned long Ask(const authority::AuthorityMap& map, const std::vector<std::string>& signers,
                      const authority::Amounts& amounts, bool isDistributed)
    {
        return Asked(m_connection.text, signers, amounts.total, amounts.largest, isDistributed,
                     map.kind.type);
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool;
    TestDatabase m_database;
    CDatabase m_source;
    host::Connection m_connection;
    authority::ContractMaps m_maps;
};

TEST_F(RandomMaps, HoldAtRandomPointsOfTheirCells)
{
    std::mt19937_64 random(Setting("SIGNUTILS_MAP_SEED", kSeedOfTheSuite));
    for (std::uint64_t left = Setting("SIGNUTILS_MAPS", kContractsOfTheSuite); left > 0; --left)
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
    std::mt19937_64 random(Setting("SIGNUTILS_MAP_SEED", kSeedOfTheSuite) + 1);
    int asked = 0;
    for (std::uint64_t left = Setting("SIGNUTILS_MAPS", kContractsOfTheSuite); left > 0; --left)
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
