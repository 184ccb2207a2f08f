// Who can still complete a distributed order, as a user asks about it.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class Pending : public SampleBankTest
{
protected:
    std::vector<std::string> Order(const std::string& contract, const std::string& signers,
                                   const std::string& total) const
    {
        return {"pending", contract, "--db",      Db(),   "--signers",  signers,
                "--total", total,    "--largest", "1.00", "--currency", "EUR"};
    }

    static Answer RunAsJson(std::vector<std::string> arguments)
    {
        arguments.emplace_back("--json");
        return RunSigncheck(arguments);
    }

    /// What the history tells of an order under C-2002.
    Answer Run(std::vector<std::string> more, const std::string& contract = "C-2002") const
    {
        std::vector<std::string> arguments = {"pending", contract, "--db", Db()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    /// A check of a distributed order under C-2002, as it is made for each signature that comes.
    int Check(const std::string& signers, const std::string& orderId, const std::string& file,
              const std::string& total = "180000.00") const
    {
        return RunSigncheck({"check",      file,         "--db",    Db(),         "--partner",
                             "MUELLER",    "--service",  "CCU",     "--client",   "KASSE",
                             "--protocol", "9",          "--type",  "1",          "--veu",
                             "--signers",  signers,      "--total", total,        "--largest",
                             "60000.00",   "--currency", "EUR",     "--order-id", orderId})
            .status;
    }
};

TEST_F(Pending, WarnsAsACheckDoesOfALargestOrderAboveTheTotal)
{
    const Answer answer = RunAsJson(Order("C-2002", "Käthe Schröder", "0.99"));

    EXPECT_THAT(answer.errors, HasSubstr("option --largest is above option --total"));
    EXPECT_THAT(answer.Json()["warnings"], SizeIs(1));
}

TEST_F(Pending, NamesWhoCanCompleteTheOrder)
{
    const auto before = AllTables();

    const Answer answer = RunSigncheck(Order("C-2002", "Käthe Schröder", "180000.00"));

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Signed by Käthe Schröder [DE-0002]\n"),
                      HasSubstr("So far    accepted"), HasSubstr("Lacks     Björn Weiß\n")));
    EXPECT_EQ(AllTables(), before);
}

TEST_F(Pending, WarnsAtTheFirstSignatureWhenNobodyCan)
{
    const Answer answer = RunSigncheck(Order("C-2002", "Käthe Schröder", "250000.01"));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("So far    refused"), HasSubstr("WARNING")));
}

TEST_F(Pending, SaysThatAllSignaturesAreThere)
{
    const Answer answer = RunAsJson(Order("C-2002", "Björn Weiß;Käthe Schröder", "180000.00"));

    EXPECT_EQ(answer.status, 0);
    const auto forecast = answer.Json()["forecasts"][0];
    EXPECT_EQ(forecast["complete"], true);
    EXPECT_EQ(forecast["completions"].size(), 0U);
}

TEST_F(Pending, NamesBothSignersBeforeTheFirstHasSigned)
{
    const auto forecast = RunAsJson(Order("C-2002", "", "180000.00")).Json()["forecasts"][0];

    ASSERT_THAT(forecast["completions"], SizeIs(1));
    EXPECT_EQ(forecast["completions"][0]["label"], "Käthe Schröder + Björn Weiß");
    EXPECT_EQ(forecast["soFar"], "no rule");
}

TEST_F(Pending, WarnsWhenTheFirstSignatureIsOneTooMany)
{
    // A stranger's signature cannot be taken back, and two signers are one too many for a single
    // signature.
    const Answer answer = RunSigncheck(Order("C-1001", "Somebody", "100.00"));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("Somebody (named by no rule)"));
}

TEST_F(Pending, TakesSignaturesAndAmountsFromTheHistory)
{
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order), 0);
    const auto before = AllTables();

    const Answer answer = Run({"--order-id", "R-1"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Amounts   total 180000.00, largest order 60000.00\n"),
                      HasSubstr("History   1 row of order 'R-1', file"),
                      HasSubstr("Signed by Käthe Schröder [DE-0002]\n"),
                      HasSubstr("Lacks     Björn Weiß\n")));
    EXPECT_EQ(AllTables(), before);
}

TEST_F(Pending, TakesEveryDigitOfTheAmountsFromTheHistory)
{
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order), 0);
    m_database.Execute(
        L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.98754, MAXORDER = 98765432109.876543");

    const auto json = Run({"--order-id", "R-1", "--json"}).Json();

    EXPECT_EQ(json["total"], 123456789012.98754);
    EXPECT_EQ(json["largest"], 98765432109.876543);
}

TEST_F(Pending, JoinsTheSignaturesOfAllChecksOfTheOrder)
{
    // One host hands on every signature so far, another one the newest alone.
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order, "170000.00"), 0);
    ASSERT_EQ(Check("KÄTHE SCHRÖDER;Björn Weiß", "R-1", m_order), 0);
    ASSERT_EQ(Check("Björn Weiß", "R-2", m_order), 0);

    const auto json = Run({"--order-id", "R-1", "--json"}).Json();

    EXPECT_THAT(json["signers"], ElementsAre("Käthe Schröder", "Björn Weiß"));
    EXPECT_EQ(json["total"], 180000.0);
    EXPECT_EQ(json["history"]["orderId"], "R-1");
    EXPECT_EQ(json["history"]["file"], m_order);
    EXPECT_EQ(json["forecasts"][0]["complete"], true);
}

TEST_F(Pending, FindsTheOrderByItsFile)
{
    ASSERT_EQ(Check("Björn Weiß", "R-1", m_order), 0);

    const Answer answer = Run({"--file", m_order, "--currency", "EUR"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, AllOf(HasSubstr("Amounts   total 180000.00 EUR, "),
                                     HasSubstr("Lacks     Käthe Schröder\n")));
}

TEST_F(Pending, WarnsOfAnOrderOfTheHistoryThatNobodyCanComplete)
{
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order, "250000.01"), 1);

    const Answer answer = Run({"--order-id", "R-1"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("WARNING   nobody can complete"));
}

TEST_F(Pending, RefusesAnOrderThatTheHistoryDoesNotHaveUnderTheContract)
{
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order), 0);

    for (const auto& [id, contract] : {std::pair("R-9", "C-2002"), std::pair("R-1", "C-2001")})
    {
        const Answer answer = Run({"--order-id", id}, contract);

        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.errors, HasSubstr("the history has no check of this order"));
    }
}

TEST_F(Pending, AsksForMoreWhereTheHistoryHasSeveralOrdersOfOneName)
{
    const std::string other = m_folder.Write("other.xml", "<Document/>");
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order), 0);
    ASSERT_EQ(Check("Björn Weiß", "R-1", other), 0);

    const Answer answer = Run({"--order-id", "R-1"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("order.xml"), HasSubstr("other.xml"),
                                     HasSubstr("Give both --order-id and --file")));
    EXPECT_EQ(Run({"--order-id", "R-1", "--file", other}).status, 0);
}

TEST_F(Pending, RefusesAListOfSignersThatMayHaveBeenCut)
{
    ASSERT_EQ(Check("Käthe Schröder", "R-1", m_order), 0);
    m_database.Execute(L"UPDATE HST_SIGNRULES SET CNS = " +
                       m_database.Literal(std::wstring(2048, L'x')));

    const Answer answer = Run({"--order-id", "R-1"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, HasSubstr("may have been cut"));
}

TEST_F(Pending, RefusesSignaturesThatAreGivenBesideThoseOfTheHistory)
{
    for (const std::string option : {"--signers", "--total", "--largest"})
    {
        const Answer answer = Run({"--order-id", "R-1", option, "1.00"});

        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --order-id"), HasSubstr(option)));
    }
}

} // namespace
} // namespace testing_support
