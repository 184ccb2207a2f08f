// Whatever is wrong with what signcheck is given is refused before anything is judged or written.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class BadInput : public SampleBankTest
{
protected:
    // Refused as wrong usage: a message, nothing on standard output, nothing recorded.
    std::string RefusalOf(const std::vector<std::string>& arguments, int status = 64)
    {
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, status) << answer.errors;
        EXPECT_EQ(answer.errors.rfind("signcheck: ", 0), 0U) << answer.errors;
        if (status == 64)
        {
            EXPECT_EQ(answer.output, "");
        }
        EXPECT_EQ(RecordsWritten(), 0U);
        return answer.errors;
    }

    std::vector<std::string> Valid() const { return CheckOf("Élodie Lefèvre"); }

    std::vector<std::string> ValidAnd(const std::vector<std::string>& more) const
    {
        auto arguments = Valid();
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }

    const std::vector<std::string> m_report = {
        "--psr-service", "STATUS",         "--party",         "QZBKFRPP",     "--order-id",
        "A001",          "--message-name", "pain.001.001.03", "--message-id", "RPT-1"};

    std::vector<std::string> ForFile(const std::string& path) const
    {
        auto arguments = Valid();
        arguments[1] = path;
        return arguments;
    }
};

TEST_F(BadInput, UnknownOptionIsNamedWithTheNearestOne)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--partnr", "X"})),
                AllOf(HasSubstr("unknown option '--partnr'"), HasSubstr("Did you mean --partner?"),
                      HasSubstr("--help")));
}

TEST_F(BadInput, UnknownOptionDoesNotShowItsValue)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--password=s3cret"})),
                AllOf(HasSubstr("'--password'"), Not(HasSubstr("s3cret"))));
}

TEST_F(BadInput, OptionWithoutItsValueIsNamed)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--request"})),
                HasSubstr("option --request has no value: nothing follows it. Give the value "
                          "behind --request."));
    EXPECT_THAT(RefusalOf(ValidAnd({"--request", "--veu"})),
                HasSubstr("option --request has no value: --veu follows it"));
}

TEST_F(BadInput, OptionGivenTwiceIsNamed)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--partner", "OTHER"})),
                HasSubstr("option --partner was given 2 times, as 'DUPONTSA' and 'OTHER'. Give it "
                          "once."));
}

TEST_F(BadInput, AConnectionStringGivenTwiceIsNotShown)
{
    EXPECT_THAT(
        RefusalOf(ValidAnd({"--db", "Driver=X;PWD=s3cret"})),
        AllOf(HasSubstr("option --db was given 2 times. Give it once."), Not(HasSubstr("s3cret"))));
}

TEST_F(BadInput, AFlagThatIsNeitherTrueNorFalse)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--veu=maybe"})),
                HasSubstr("option --veu: 'maybe' is neither true nor false. Give --veu alone, or "
                          "as --veu=false."));
}

TEST_F(BadInput, UnknownCommandIsNamedWithTheNearestOne)
{
    EXPECT_THAT(RefusalOf({"histroy"}),
                AllOf(HasSubstr("unknown command 'histroy'"), HasSubstr("Did you mean history?")));
    EXPECT_THAT(RefusalOf({}), HasSubstr("no command was given"));
}

TEST_F(BadInput, EachMissingOptionIsNamedWithAnExample)
{
    for (const std::string option : {"--partner", "--service", "--client", "--protocol", "--type",
                                     "--signers", "--total", "--largest", "--currency", "--db"})
    {
        EXPECT_THAT(RefusalOf(Without(Valid(), option)),
                    HasSubstr("option " + option + " is missing. Give "));
    }
}

TEST_F(BadInput, MissingOrderFile)
{
    const std::string path = m_folder.Path("none.xml");

    EXPECT_THAT(RefusalOf(ForFile(path)),
                HasSubstr("argument FILE: there is no file '" + path + "'. Give the path"));
    EXPECT_THAT(RefusalOf({"check"}), HasSubstr("argument FILE is missing"));
}

TEST_F(BadInput, FolderInsteadOfAnOrderFile)
{
    EXPECT_THAT(RefusalOf(ForFile(m_folder.Path())),
                HasSubstr("argument FILE: '" + m_folder.Path() + "' is a folder"));
}

TEST_F(BadInput, EmptyConnectionString)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--db", "")),
                AllOf(HasSubstr("option --db"), HasSubstr("connection string is empty"),
                      HasSubstr("Driver=SQLite3")));
}

TEST_F(BadInput, WrongDriver)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--db", "Driver=NoSuchDriver;PWD=s3cret"), 3),
                AllOf(HasSubstr("option --db"), HasSubstr("Driver=NoSuchDriver"),
                      HasSubstr("cannot be opened"), HasSubstr("odbcinst"),
                      Not(HasSubstr("s3cret"))));
}

TEST_F(BadInput, DatabaseFileThatIsNotThereIsNotCreated)
{
    const std::string path = m_folder.Path("none.db");

    EXPECT_THAT(RefusalOf(With(Valid(), "--db", "Driver=SQLite3;Database=" + path), 3),
                AllOf(HasSubstr(path), HasSubstr("signcheck init")));
    EXPECT_THAT(RefusalOf({"history", "--db", "Driver=SQLite3;Database=" + path}, 3),
                HasSubstr("is not there"));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(BadInput, DatabaseWithoutTablesPointsToInit)
{
    const std::string path = m_folder.Write("empty.db", "");

    const std::string refusal =
        RefusalOf(With(Valid(), "--db", "Driver=SQLite3;Database=" + path), 3);

    EXPECT_THAT(refusal, AllOf(HasSubstr("has no table SSR_CONTRACTCUR"),
                               HasSubstr("run signcheck init --db CONN")));
    EXPECT_EQ(ReadWholeFile(path), "");
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("spool")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("handoff")));
}

TEST_F(BadInput, AFileThatIsNoDatabaseIsNotJudged)
{
    const std::string path = m_folder.Write("notes.db", std::string(4096, 'x'));

    EXPECT_THAT(RefusalOf(With(Valid(), "--db", "Driver=SQLite3;Database=" + path), 3),
                AllOf(HasSubstr("option --db"), HasSubstr("not a database"), HasSubstr(path)));
    EXPECT_EQ(ReadWholeFile(path), std::string(4096, 'x'));
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("spool")));
}

TEST_F(BadInput, ATruncatedDatabaseIsNotJudged)
{
    const std::string path = m_folder.Path("whole.db");
    const std::string db = "Driver=SQLite3;Database=" + path;
    ASSERT_EQ(RunSigncheck({"init", "--db", db, "--sample"}).status, 0);
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);

    EXPECT_THAT(RefusalOf(With(Valid(), "--db", db), 3),
                AllOf(HasSubstr("cannot be read"), HasSubstr("malformed"), HasSubstr(path)));
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("spool")));
}

TEST_F(BadInput, AConnectionThatFailsHandsNoReportOn)
{
    auto arguments = With(Valid(), "--db", "Driver=NoSuchDriver");
    arguments.insert(arguments.end(), m_report.begin(), m_report.end());
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.Json()["outcome"], "not-run");
    EXPECT_TRUE(answer.Json()["verdict"].is_null());
    EXPECT_TRUE(answer.Json()["report"].is_null());
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("handoff")));
}

TEST_F(BadInput, ContractIdentifiersLongerThanEightCharacters)
{
    for (const std::string option : {"--partner", "--service", "--client"})
    {
        EXPECT_THAT(
            RefusalOf(With(Valid(), option, "NINECHARS")),
            HasSubstr("option " + option + ": 'NINECHARS' has 9 characters. Give at most 8."));
    }
    EXPECT_THAT(RefusalOf(ValidAnd({"--psr-service", "NINECHARS"})),
                HasSubstr("option --psr-service: 'NINECHARS' has 9 characters"));
}

TEST_F(BadInput, AStatusReportWithoutOneOfItsTextsIsRefused)
{
    for (const std::string option : {"--party", "--order-id", "--message-name", "--message-id"})
    {
        EXPECT_THAT(RefusalOf(Without(ValidAnd(m_report), option)),
                    AllOf(HasSubstr("option " + option + " is missing, but --psr-service"),
                          HasSubstr("Give it as " + option + " ")));
        EXPECT_THAT(RefusalOf(With(ValidAnd(m_report), option, "")),
                    HasSubstr("option " + option + ": the value is empty"));
    }
}

TEST_F(BadInput, AStatusReportWithATextOfMoreThan35CharactersIsRefused)
{
    for (const std::string option : {"--party", "--order-id", "--message-name", "--message-id"})
    {
        EXPECT_THAT(
            RefusalOf(With(ValidAnd(m_report), option, std::string(36, 'x'))),
            AllOf(HasSubstr("option " + option), HasSubstr("36 characters. Give at most 35.")));
    }
}

TEST_F(BadInput, AReportServiceOrPartnerOutsideTheStoreIsRefused)
{
    for (const std::string name : {"/", "..", ".", "../x", "a\\b"})
    {
        EXPECT_THAT(
            RefusalOf(With(ValidAnd(m_report), "--psr-service", name)),
            AllOf(HasSubstr("option --psr-service: '" + name + "'"), HasSubstr("hand-off store")));
        EXPECT_THAT(RefusalOf(With(ValidAnd(m_report), "--partner", name)),
                    HasSubstr("option --partner: '" + name + "'"));
    }
    EXPECT_THAT(RefusalOf(With(ValidAnd(m_report), "--psr-service", "a\x01")),
                AllOf(HasSubstr("option --psr-service"), HasSubstr("control character")));
}

TEST_F(BadInput, EmptyContractIdentifiers)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--partner", "")),
                HasSubstr("option --partner: the value is empty"));
}

TEST_F(BadInput, ContractIdentifiersWithAnApostrophe)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--partner", "'OR''='")),
                AllOf(HasSubstr("option --partner"), HasSubstr("apostrophe")));
}

TEST_F(BadInput, HandOffFolderLongerThan260Characters)
{
    EXPECT_THAT(
        RefusalOf(ValidAnd({"--hand-off", std::string(261, 'x')})),
        AllOf(HasSubstr("option --hand-off"), HasSubstr("has 261 characters. Give at most 260.")));
}

TEST_F(BadInput, AmountsInAnotherForm)
{
    for (const std::string amount :
         {"1500,00", "1,500.00", "1 500", "+1500", "-1500", "15e2", "inf", "nan", "1500.123", ""})
    {
        EXPECT_THAT(RefusalOf(With(Valid(), "--total", amount)),
                    AllOf(HasSubstr("option --total: '" + amount + "' is not an amount in EUR"),
                          HasSubstr("such as 1500.00")));
    }
    EXPECT_THAT(RefusalOf(With(Valid(), "--largest", "1,5")), HasSubstr("option --largest: '1,5'"));
}

TEST_F(BadInput, UnknownCurrency)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--currency", "EURO")),
                HasSubstr("option --currency: 'EURO' is an unknown currency"));
}

TEST_F(BadInput, NumbersThatAreNone)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--protocol", "EBICS")),
                HasSubstr("option --protocol: 'EBICS' is not a whole number"));
    EXPECT_THAT(RefusalOf(With(Valid(), "--type", "-1")), HasSubstr("option --type: '-1'"));
    EXPECT_THAT(RefusalOf(ValidAnd({"--file-id", "4294967296"})),
                HasSubstr("option --file-id: '4294967296'"));
}

TEST_F(BadInput, CharactersWithoutPlaceInWindows1252)
{
    EXPECT_THAT(RefusalOf(With(Valid(), "--partner", "БАНК")),
                AllOf(HasSubstr("option --partner"), HasSubstr("'Б'"), HasSubstr("Windows-1252")));
    EXPECT_THAT(RefusalOf(ForFile(m_folder.Path("заказ.xml"))),
                AllOf(HasSubstr("argument FILE"), HasSubstr("Windows-1252")));
}

TEST_F(BadInput, ControlCharacters)
{
    EXPECT_THAT(RefusalOf(ValidAnd({"--request", "a\x1B[2J"})),
                AllOf(HasSubstr("option --request"), HasSubstr("control character"),
                      Not(HasSubstr("\x1B"))));
}

TEST_F(BadInput, FilesThatCannotBeWritten)
{
    const std::string path = m_folder.Path("none/x");

    EXPECT_THAT(RefusalOf(ValidAnd({"--trace", path})), HasSubstr("option --trace: '" + path));
    EXPECT_THAT(RefusalOf(ValidAnd({"--log", path})), HasSubstr("option --log: '" + path));
}

TEST_F(BadInput, TheOrderIsNoLog)
{
    const std::string order = m_folder.Write("order.xml", "<order/>");
    const std::string other = m_folder.Path("other folder");
    std::filesystem::create_directory(other);
    const auto valid = ForFile(order);
    for (const std::string& log : {order, other + "/../order.xml"})
    {
        auto arguments = valid;
        arguments.insert(arguments.end(), {"--log", log});
        EXPECT_THAT(RefusalOf(arguments), AllOf(HasSubstr("option --log: '" + log),
                                                HasSubstr("is the order file itself")));
    }
    EXPECT_EQ(ReadWholeFile(order), "<order/>");
}

// What was named by mistake stays as it is; an empty file and an earlier trace are appended to.
TEST_F(BadInput, ATraceIsAppendedToNothingElse)
{
    const std::string database = m_folder.Write("other.db", "SQLite format 3");
    const std::string order = ReadWholeFile(m_order);
    for (const std::string& path : {m_order, database})
    {
        EXPECT_THAT(RefusalOf(ValidAnd({"--trace", path})),
                    AllOf(HasSubstr("option --trace: '" + path + "' is no trace"),
                          HasSubstr("Name a new file")));
    }
    EXPECT_EQ(ReadWholeFile(m_order), order);
    EXPECT_EQ(ReadWholeFile(database), "SQLite format 3");

    const std::string trace = m_folder.Write("empty.trace", "");
    EXPECT_EQ(RunSigncheck(ValidAnd({"--trace", trace})).status, 0);
    const std::size_t size = ReadWholeFile(trace).size();
    EXPECT_EQ(RunSigncheck(ValidAnd({"--trace", trace})).status, 0);
    EXPECT_GT(ReadWholeFile(trace).size(), size);
}

TEST_F(BadInput, IsOneJsonObjectWhereJsonIsAskedFor)
{
    auto arguments = With(Valid(), "--total", "1,5");
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 64);
    EXPECT_EQ(answer.Json()["status"], 64);
    EXPECT_THAT(answer.errors, HasSubstr(answer.Json()["error"].get<std::string>()));
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(BadInput, SignersOfOnlySeparatorsAreJudged)
{
    const Answer answer = RunSigncheck(CheckOf(" ; ;"));

    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.errors, HasSubstr("--signers names nobody"));
    EXPECT_EQ(RecordsWritten(), 2U);
}

TEST_F(BadInput, AnApostropheInACertificateNameWarnsAndCostsTheRow)
{
    const Answer answer = RunSigncheck(CheckOf("Siobhan O'Brien"));

    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("WARNING: option --signers: 'Siobhan O'Brien'"),
                                     HasSubstr("look-up of the holders will fail"),
                                     HasSubstr("1 of 1 history rows were NOT written")));
    EXPECT_TRUE(m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").empty());
    EXPECT_EQ(m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size(), 1U);
}

TEST_F(BadInput, AnApostropheInTheFileNameWarnsAndCostsTheRow)
{
    const std::string path = m_folder.Write("l'ordre.xml", "<Document/>");

    const Answer answer = RunSigncheck(ForFile(path));

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("WARNING: argument FILE: '" + path + "'"),
                                     HasSubstr("history row will not be written")));
    EXPECT_TRUE(m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").empty());
    EXPECT_EQ(m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size(), 1U);
}

TEST_F(BadInput, AnApostropheInTheOrderIdentifierWarnsAndCostsTheRow)
{
    const Answer answer = RunSigncheck(ValidAnd({"--order-id", "A'01"}));

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: option --order-id: 'A'01'"));
    EXPECT_TRUE(m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").empty());
}

} // namespace
} // namespace testing_support
