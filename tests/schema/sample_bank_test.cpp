#include "schema/sample_bank.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "schema/installer.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using schema::SampleBlock;
using schema::SampleReport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::Row;
using testing_support::TestDatabase;

namespace
{

class SampleBank : public testing::Test
{
protected:
    SampleBank()
    {
        m_library.OpenEx(m_database.ConnexionString().c_str(),
                         CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    std::wstring CountOf(const std::wstring& table)
    {
        return m_database.Query(L"SELECT COUNT(*) FROM " + table)[0][0].value_or(L"");
    }

    std::vector<std::wstring> Counts()
    {
        return {CountOf(L"SSR_HOLDER"), CountOf(L"SSR_HOLDERID"), CountOf(L"SSR_CONTRACT"),
                CountOf(L"SSR_CONTRACTCUR"), CountOf(L"SSR_CONTRACTRULE")};
    }

    TestDatabase m_database;
    CDatabase m_library;
};

} // namespace

TEST_F(SampleBank, HasTwelveHoldersAndTenContracts)
{
    const SampleReport report = schema::InstallSample(m_library);

    EXPECT_EQ(report.added, 22);
    EXPECT_EQ(report.alreadyThere, 0);
    EXPECT_EQ(report.Text(), "sample bank: 22 holders and contracts added, 0 were there already");
    EXPECT_THAT(Counts(), ElementsAre(L"12", L"14", L"10", L"9", L"12"));
}

TEST_F(SampleBank, IsNotDoubledByASecondInstallation)
{
    schema::InstallSample(m_library);
    const auto before = Counts();

    const SampleReport again = schema::InstallSample(m_library);

    EXPECT_EQ(again.added, 0);
    EXPECT_EQ(again.alreadyThere, 22);
    EXPECT_EQ(Counts(), before);
}

TEST_F(SampleBank, LeavesAHolderAndAContractAsTheyWereChanged)
{
    schema::InstallSample(m_library);
    m_database.Execute(L"UPDATE SSR_HOLDER SET OPPOSITION = '1' WHERE HUID = 'FR-0001'");
    m_database.Execute(L"DELETE FROM SSR_CONTRACTRULE WHERE CUID = 'C-7001'");

    schema::InstallSample(m_library);

    EXPECT_THAT(m_database.Query(L"SELECT OPPOSITION FROM SSR_HOLDER WHERE HUID = 'FR-0001'"),
                ElementsAre(Row{L"1"}));
    EXPECT_THAT(m_database.Query(L"SELECT CUID FROM SSR_CONTRACTRULE WHERE CUID = 'C-7001'"),
                IsEmpty());
}

TEST_F(SampleBank, KeepsAccentsAndTheApostrophe)
{
    schema::InstallSample(m_library);

    EXPECT_THAT(m_database.Query(L"SELECT FNAME, LNAME FROM SSR_HOLDER WHERE HUID IN ('DE-0001', "
                                 L"'ES-0001', 'IE-0001') ORDER BY HUID"),
                ElementsAre(Row{L"J\u00FCrgen", L"Gro\u00DFmann"},
                            Row{L"Jos\u00E9", L"N\u00FA\u00F1ez Ib\u00E1\u00F1ez"},
                            Row{L"Siobh\u00E1n", L"O'Brien"}));
    EXPECT_THAT(m_database.Query(L"SELECT HUID FROM SSR_HOLDERID WHERE CN = "
                                 L"'Tesorer\u00EDa Iberexpo'"),
                ElementsAre(Row{L"ES-0002"}, Row{L"ES-0003"}));
}

TEST_F(SampleBank, NamesOnlyHoldersThatItHas)
{
    schema::InstallSample(m_library);

    EXPECT_THAT(m_database.Query(L"SELECT CUID FROM SSR_CONTRACTRULE WHERE (HUID1 IS NOT NULL AND "
                                 L"HUID1 NOT IN (SELECT HUID FROM SSR_HOLDER)) OR (HUID2 IS NOT "
                                 L"NULL AND HUID2 NOT IN (SELECT HUID FROM SSR_HOLDER))"),
                IsEmpty());
}

TEST_F(SampleBank, FitsTheColumnsOfEveryProduct)
{
    schema::InstallSample(m_library);

    EXPECT_THAT(m_database.Query(L"SELECT CUID FROM SSR_CONTRACT WHERE LENGTH(VPNAME) > 8 OR "
                                 L"LENGTH(VFNAME) > 8 OR LENGTH(VCNAME) > 8"),
                IsEmpty());
    EXPECT_THAT(m_database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE LENGTH(VPNAME) > 8"),
                IsEmpty());
}

TEST_F(SampleBank, LeavesNothingWhenItCannotBeWritten)
{
    m_database.Execute(L"DROP TABLE SSR_CONTRACTRULE");
    bool raised = false;

    database::GuardDatabase([this] { schema::InstallSample(m_library); },
                            [&raised](const CDBException&) { raised = true; }, [] {});

    EXPECT_TRUE(raised);
    EXPECT_EQ(CountOf(L"SSR_HOLDER"), L"0");
}

TEST(SampleBankDescription, NamesEveryHolderAndContract)
{
    const std::string readme =
        testing_support::ReadWholeFile(SIGNUTILS_SCHEMA_FOLDER "/sample/README.md");
    const std::vector<SampleBlock> bank = schema::SampleBank();
    EXPECT_EQ(bank.size(), 22U);
    EXPECT_EQ(std::count_if(bank.begin(), bank.end(),
                            [](const SampleBlock& block) { return block.isContract; }),
              10);
    for (const SampleBlock& block : bank)
    {
        const std::string key(block.key.begin(), block.key.end());
        EXPECT_THAT(readme, HasSubstr("\n| " + key + " |"));
        EXPECT_THAT(block.statements, testing::Not(IsEmpty()));
    }
}
