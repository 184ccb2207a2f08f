// signcheck rules export: the rule tables as a file that gives them back to the last letter.

#include "database/cdatabase.h"
#include "host/rulebook/rule_book_reader.h"
#include "host/rulebook/rule_book_writer.h"
#include "host/rulebook/rule_file.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class RulesExport : public SampleBankTest
{
protected:
    RulesExport()
    {
        m_opened.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    Answer Export(const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"rules", "export", "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    static rulebook::RuleBook Read(const std::string& toml)
    {
        rulebook::Problems problems;
        const rulebook::RuleFile file = rulebook::ReadRuleFile(toml, problems);
        for (const rulebook::Problem& problem : problems.InOrder())
        {
            ADD_FAILURE() << rulebook::TextOf(problem, "export") << "\n" << toml;
        }
        return file.book;
    }

    CDatabase m_opened;
};

TEST_F(RulesExport, AHolderAndAContractAreOneTableEach)
{
    const Answer answer = Export({"--contract", "C-7001"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.errors, "");
    EXPECT_THAT(answer.output, HasSubstr(R"(
[[holder]]
huid = "IE-0001"
partner = "BODENSEE"
first-name = "Siobhán"
last-name = "O'Brien"
opposition = "0"
certificates = [
  { name = "Siobhan OBrien", serial = "7C01", expires = 2027-11-30 },
]

[[contract]]
cuid = "C-7001"
partner = "BODENSEE"
service = "CCT"
client = "FINANZ"
protocol = 9
side = "server"
entry = { all-holders = false, opposition = "0" }
terms = [
  { type = 1, profile = 2, all-holders = false, opposition = "0" },
]
rules = [
  { holder1 = "DE-0003", alone = true, amount = "5000.00", level = "file" },
  { holder1 = "DE-0003", holder2 = "IE-0001", alone = false, amount = "50000.00", level = "file" },
]
)"));
    EXPECT_THAT(answer.output, AllOf(testing::StartsWith("# "), Not(HasSubstr("C-1001")),
                                     Not(HasSubstr("FR-0001"))));
}

TEST_F(RulesExport, TheWholeBankComesBackFromItsFile)
{
    const rulebook::RuleBook bank = rulebook::ReadRuleBook(m_opened);

    const Answer answer = Export();

    EXPECT_EQ(Read(answer.output), bank);
    EXPECT_EQ(bank.contracts.size(), 10U);
    EXPECT_EQ(Export().output, answer.output);
}

TEST_F(RulesExport, OddLettersAndNumbersComeBackFromTheirFile)
{
    const rulebook::ContractKey key = {"P", "S", "C", 77, 5};
    rulebook::RuleBook odd;
    odd.holders = {
        {"Z1", {}, {}, {}, {}, {{"tab\tquote\"back\\slash", "", "0001-01-01"}}},
        {"Z2", "", "", "𠮷 \u202Eright", "free", {{"\x01\x7F\u0085", {}, {}}, {"two", {}, {}}}},
    };
    odd.contracts = {
        {"Z1", rulebook::ContractEntry{{"Q", "S", "C", 77, 5}, 7, ""}, {{key, -1, -2, {}, {}}}, {}},
        {"Z2", {}, {{key, 1, 0, 2, "x"}, {{"P", "T", "D", 78, 0}, 2, 1, 1, "0"}}, {{}, {}}},
        {"Z3", {}, {}, {{"", "", -3, "1.000", 4}}},
        {{}, {}, {{key, 9, {}, {}, {}}}, {}},
    };
    rulebook::WriteRuleBook(m_opened, odd);

    EXPECT_EQ(Read(Export().output), rulebook::ReadRuleBook(m_opened));
    EXPECT_EQ(rulebook::ReadRuleBook(m_opened, {.cuid = "Z2", .key = {}}).contracts[0],
              odd.contracts[1]);
}

TEST_F(RulesExport, LettersThatRewriteTheScreenAreEscaped)
{
    m_database.Execute(L"UPDATE SSR_HOLDER SET LNAME = 'a\x1B[2Jb\u202Ec' WHERE HUID = 'FR-0001'");

    EXPECT_THAT(Export().output, HasSubstr("last-name = \"a\\u001B[2Jb\\u202Ec\""));
}

TEST_F(RulesExport, AnUnknownContractIsTold)
{
    const Answer answer = Export({"--contract", "C-9999"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors,
                HasSubstr("option --contract: the database has no contract 'C-9999'"));
}

TEST_F(RulesExport, CertificatesOfNobodyAreTold)
{
    m_database.Execute(L"INSERT INTO SSR_HOLDERID (HUID, CN) VALUES ('nobody', 'x')");

    const Answer answer = Export();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: 1 row"));
    EXPECT_THAT(answer.output, Not(HasSubstr("nobody")));
}

TEST_F(RulesExport, ADatabaseWithoutTablesPointsToInit)
{
    const std::string path = m_folder.Write("empty.db", "");

    const Answer answer =
        RunSigncheck({"rules", "export", "--db", "Driver=SQLite3;Database=" + path});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("no table SSR_HOLDER"), HasSubstr("signcheck init")));
    EXPECT_EQ(answer.output, "");
}

} // namespace
} // namespace testing_support
