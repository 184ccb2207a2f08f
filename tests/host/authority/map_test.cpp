// The map of the sample bank's contracts, as a user sees it.

#include "support/codepage.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class Map : public SampleBankTest
{
protected:
    Answer RunMap(const std::string& contract, const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments = {"map", contract, "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    /// Outcomes by cell of one row of the first map.
    static std::vector<std::string> Outcomes(const nlohmann::json& maps, const std::string& label,
                                             const char* mode)
    {
        std::vector<std::string> outcomes;
        for (const auto& row : maps["maps"][0]["rows"])
        {
            if (row["label"] == label)
            {
                for (const auto& cell : row[mode])
                {
                    outcomes.push_back(cell["outcome"]);
                }
            }
        }
        return outcomes;
    }
};

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin))
    {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

TEST_F(Map, ShowsThatALimitForOneVetoesTheWiderOne)
{
    const auto maps = RunMap("C-7001", {"--json"}).Json();

    using Outcomes3 = std::vector<std::string>;
    EXPECT_EQ(maps["maps"][0]["cells"][1]["total"]["above"], 5000.0);
    EXPECT_EQ(maps["maps"][0]["cells"][1]["total"]["upTo"], 50000.0);
    EXPECT_EQ(Outcomes(maps, "Björn Weiß", "direct"),
              (Outcomes3{"accepted", "refused", "refused"}));
    EXPECT_EQ(Outcomes(maps, "Björn Weiß + Siobhán O'Brien", "direct"),
              (Outcomes3{"accepted", "accepted", "refused"}));
    EXPECT_EQ(Outcomes(maps, "Björn Weiß + Siobhán O'Brien", "distributed"),
              (Outcomes3{"accepted", "refused", "refused"}));
    EXPECT_EQ(Outcomes(maps, "nobody", "direct"), (Outcomes3{"no rule", "no rule", "no rule"}));
}

TEST_F(Map, DrawsATableOfLettersWithALegend)
{
    const Answer answer = RunMap("C-7001");

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    EXPECT_THAT(answer.output, HasSubstr("  A  total up to 5000.00\n"
                                         "  B  total above 5000.00, up to 50000.00\n"
                                         "  C  total above 50000.00\n"));
    EXPECT_THAT(answer.output, HasSubstr("\nBjörn Weiß                     any  ok  NO  NO\n"));
}

TEST_F(Map, KeepsWithinEightyColumns)
{
    // Enough limits for two tables; the other contracts have names that must be folded.
    for (int limit = 1; limit <= 10; ++limit)
    {
        m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, "
                           L"TLEVEL) VALUES ('C-3001', 'ES-0001', NULL, 1, '" +
                           std::to_wstring(limit) + L"00.00', 1)");
    }

    for (const char* const contract : {"C-3001", "C-3002", "C-4001"})
    {
        const Answer answer = RunMap(contract);
        EXPECT_EQ(answer.status, 0);
        for (const std::string& line : Lines(answer.output))
        {
            const auto letters = std::count_if(line.begin(), line.end(),
                                               [](char byte) { return (byte & 0xC0) != 0x80; });
            EXPECT_LE(letters, 80) << line;
        }
    }
}

TEST_F(Map, CountsCellsOfTotalAndLargestOrderTogether)
{
    m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL) "
                       L"VALUES ('C-3001', 'ES-0001', NULL, 1, '10000.00', 0)");

    const auto maps = RunMap("C-3001", {"--json"}).Json();

    // Total up to 10000 or above, largest order up to 3000 or above.
    EXPECT_THAT(maps["maps"][0]["cells"], SizeIs(4));
    EXPECT_EQ(Outcomes(maps, "José Núñez Ibáñez", "direct"),
              (std::vector<std::string>{"accepted", "refused", "refused", "refused"}));
}

TEST_F(Map, TellsThatOrdersOfEveryOtherTypeMayBeReleasedByAnyone)
{
    const auto maps = RunMap("C-1002", {"--json"}).Json();

    ASSERT_THAT(maps["maps"], SizeIs(2));
    EXPECT_TRUE(maps["maps"][1]["type"].is_null());
    EXPECT_EQ(maps["maps"][1]["rows"][0]["label"], "nobody");
    EXPECT_EQ(maps["maps"][1]["rows"][0]["direct"][0]["outcome"], "accepted");
}

TEST_F(Map, NotesTheRulesOfAnotherContractOfTheSameKey)
{
    m_database.Execute(
        L"INSERT INTO SSR_CONTRACTCUR (CUID, VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, "
        L"SERVER, PROFILE, ALLHOLDERS, OPPOSITION) "
        L"VALUES ('C-7002', 'BODENSEE', 'CCT', 'FINANZ', 9, 1, 1, 2, 0, '0')");
    m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL) "
                       L"VALUES ('C-7002', 'DE-0001', NULL, 1, '70.00', 0)");

    const auto maps = RunMap("C-7001", {"--json"}).Json();

    EXPECT_THAT(maps["notes"][0].get<std::string>(), HasSubstr("C-7002 count as well"));
    EXPECT_EQ(Outcomes(maps, "Jürgen Großmann", "direct")[0], "accepted");
}

TEST_F(Map, WritesNothingToTheDatabaseAndLeavesNoCopyBehind)
{
    const TemporaryFolder copies;
    const TemporaryFilesIn folder(copies.Path());

    EXPECT_EQ(RunMap("C-7001").status, 0);

    EXPECT_EQ(RecordsWritten(), 0U);
    EXPECT_THAT(folder.Left(), IsEmpty());
}

TEST_F(Map, RefusesAContractThatIsNotThere)
{
    const Answer answer = RunMap("C-9999");

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("'C-9999'"), HasSubstr("CUID")));
}

TEST_F(Map, AsksForTheContract)
{
    const Answer answer = RunSigncheck({"map", "--db", Db()});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("signcheck map CONTRACT"));
}

TEST_F(Map, WritesAPageThatNeedsNothingElse)
{
    const std::string path = m_folder.Path("map.html");
    m_database.Execute(L"UPDATE SSR_HOLDER SET LNAME = " + m_database.Literal(L"<Weiß & Co>") +
                       L" WHERE HUID = 'DE-0003'");

    EXPECT_EQ(RunMap("C-7001", {"--html", path}).status, 0);

    const std::string page = ReadWholeFile(path);
    EXPECT_THAT(page, AllOf(HasSubstr("<!DOCTYPE html>"), HasSubstr("name=\"viewport\""),
                            HasSubstr("@media print"), HasSubstr("&lt;Weiß &amp; Co&gt;"),
                            HasSubstr("refused AM02")));
    EXPECT_THAT(page,
                AllOf(Not(HasSubstr("http")), Not(HasSubstr("<script")), Not(HasSubstr("src="))));
}

TEST_F(Map, WritesNamesIntoItsPageThatNoBrowserTakesForMarkup)
{
    const std::string hostile = "\"'><script>alert(1)</script>\x1B[2J\xE2\x80\xAE";
    m_database.Execute(L"UPDATE SSR_HOLDER SET LNAME = " +
                       m_database.Literal(support::WideFromUtf8(hostile)) +
                       L" WHERE HUID = 'DE-0003'");
    m_database.Execute(L"UPDATE SSR_CONTRACT SET CUID = '<b>' WHERE CUID = 'C-7001'");
    m_database.Execute(L"UPDATE SSR_CONTRACTCUR SET CUID = '<b>' WHERE CUID = 'C-7001'");
    m_database.Execute(L"UPDATE SSR_CONTRACTRULE SET CUID = '<b>' WHERE CUID = 'C-7001'");
    const std::string path = m_folder.Path("map.html");

    const Answer answer = RunMap("<b>", {"--html", path});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const std::string page = ReadWholeFile(path);
    EXPECT_THAT(page, AllOf(HasSubstr("&quot;'&gt;&lt;script&gt;alert(1)&lt;/script&gt;?[2J?"),
                            HasSubstr("Authority map of contract &lt;b&gt;</title>")));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("<b>"))));
    EXPECT_THAT(page + answer.output,
                AllOf(Not(HasSubstr("\x1B")), Not(HasSubstr("\xE2\x80\xAE"))));
}

TEST_F(Map, PutsNoPageInThePlaceOfWhatIsNoFile)
{
    const std::string folder = m_folder.Path("pages");
    std::filesystem::create_directory(Utf8Path(folder));

    const Answer answer = RunMap("C-7001", {"--html", folder});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("is no regular file"));
}

TEST_F(Map, PutsNoPageInThePlaceOfTheDatabase)
{
    const std::string file = m_folder.Write("bank.copy", "SQLite format 3");

    const Answer answer = RunMap("C-7001", {"--html", file});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("no page that signcheck wrote"));
    EXPECT_EQ(ReadWholeFile(file), "SQLite format 3");
}

TEST_F(Map, RefusesAPageThatCannotBeWritten)
{
    const Answer answer = RunMap("C-7001", {"--html", m_folder.Path("missing/map.html")});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --html"));
}

} // namespace
} // namespace testing_support
