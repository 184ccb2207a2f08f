// Orders that nobody has made, as a user asks about them.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

class Simulate : public SampleBankTest
{
protected:
    std::vector<std::string> Order(const std::string& contract, const std::string& signers,
                                   const std::string& total, const std::string& largest) const
    {
        return {"simulate", contract, "--db",      Db(),    "--signers",  signers,
                "--total",  total,    "--largest", largest, "--currency", "EUR"};
    }

    Answer Run(std::vector<std::string> arguments, const std::string& more)
    {
        arguments.push_back(more);
        return RunSigncheck(arguments);
    }
};

TEST_F(Simulate, DecidesAsACheckWouldAndWritesNothing)
{
    const auto before = AllTables();

    const Answer answer = Run(Order("C-7001", "Björn Weiß", "20000.00", "9000.00"), "--json");

    EXPECT_EQ(answer.status, 1) << answer.errors;
    const auto decision = answer.Json()["decisions"][0];
    EXPECT_EQ(decision["outcome"], "refused");
    EXPECT_EQ(decision["reasonCode"], "AM02");
    EXPECT_THAT(decision["reasonText"].get<std::string>(), HasSubstr("limit 5000.00"));
    EXPECT_EQ(AllTables(), before);
}

TEST_F(Simulate, EndsWithTheStatusOfACheck)
{
    EXPECT_EQ(RunSigncheck(Order("C-7001", "Björn Weiß", "5000.00", "9.00")).status, 0);
    EXPECT_EQ(RunSigncheck(Order("C-7001", "Björn Weiß", "5000.01", "9.00")).status, 1);
    EXPECT_EQ(RunSigncheck(Order("C-7001", "Somebody", "5000.00", "9.00")).status, 2);
    EXPECT_EQ(RunSigncheck(Order("C-0000", "Somebody", "5000.00", "9.00")).status, 1);
    EXPECT_EQ(RunSigncheck(Order("C-7001", "Somebody", "5000.001", "9.00")).status, 64);
}

TEST_F(Simulate, WarnsAsACheckDoesOfALargestOrderAboveTheTotal)
{
    const std::string warning = "option --largest is above option --total; the rules are judged on "
                                "both as given.";

    const Answer answer = Run(Order("C-7001", "Björn Weiß", "9.00", "9.01"), "--json");

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr(warning));
    EXPECT_EQ(answer.Json()["warnings"], nlohmann::json::array({warning}));
    EXPECT_TRUE(
        Run(Order("C-7001", "Björn Weiß", "9.00", "9.00"), "--json").Json()["warnings"].empty());
}

TEST_F(Simulate, TellsTheDecisionInWords)
{
    const Answer answer = RunSigncheck(Order("C-7001", "Björn Weiß", "20000.00", "9000.00"));

    EXPECT_EQ(answer.errors, "");
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Contract  C-7001, order type 1: partner BODENSEE"),
                      HasSubstr("Amounts   total 20000.00 EUR, largest order 9000.00"),
                      HasSubstr("Decided   REFUSED"), HasSubstr("Reason code AM02"),
                      HasSubstr("nothing was written to the database")));
}

TEST_F(Simulate, JudgesDistributedSignaturesWhenAsked)
{
    const auto order = Order("C-7001", "Björn Weiß;Siobhan OBrien", "20000.00", "9000.00");

    EXPECT_EQ(RunSigncheck(order).status, 0);
    EXPECT_EQ(Run(order, "--veu").status, 1);
}

TEST_F(Simulate, JudgesTheOrderTypeThatWasAskedFor)
{
    auto order = Order("C-1002", "", "20000.00", "9000.00");
    order.insert(order.end(), {"--type", "7", "--json"});

    const auto json = RunSigncheck(order).Json();

    EXPECT_EQ(json["decisions"][0]["type"], 7);
    EXPECT_EQ(json["decisions"][0]["outcome"], "accepted");
}

} // namespace
} // namespace testing_support
