// The amounts that a check takes from an order file, as signcheck amounts shows them.

#include "tests/engine/corpus_table.h"
#include "tests/host/order_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// As a number: "350.50" and "350.5" are the same.
std::string Normalised(std::string digits)
{
    if (digits.find('.') != std::string::npos)
    {
        digits.erase(digits.find_last_not_of('0') + 1U);
        digits.erase(digits.find_last_not_of('.') + 1U);
    }
    return digits;
}

std::set<std::string> KeysOf(const nlohmann::json& object)
{
    std::set<std::string> keys;
    for (const auto& [key, value] : object.items())
    {
        keys.insert(key);
    }
    return keys;
}

class AmountsOfCorpus : public OrderFilesTest, public testing::WithParamInterface<CorpusCase>
{
};

TEST_P(AmountsOfCorpus, AreExact)
{
    const CorpusCase& expected = GetParam();
    const std::string order = Corpus(expected.file);
    const std::string format = std::string(expected.format1) + "/" + expected.format2;

    const Answer answer = RunSigncheck({"amounts", order, "--format", format, "--json"});

    const auto json = answer.Json();
    EXPECT_EQ(json["format"], format);
    EXPECT_EQ(Normalised(PrintedValue(answer.output, "total")), Normalised(expected.total));
    EXPECT_EQ(Normalised(PrintedValue(answer.output, "largestOrder")),
              Normalised(expected.largest));
    EXPECT_EQ(json["orders"], expected.orders);
    std::string errors;
    for (const auto& error : json["errors"])
    {
        EXPECT_TRUE(error["number"].is_number());
        errors += (errors.empty() ? "" : ",") + error["number"].dump();
    }
    EXPECT_EQ(errors, expected.errors);
    EXPECT_EQ(answer.status, errors.empty() ? 0 : 1);
    EXPECT_THAT(Names(), ElementsAre(expected.file));
}

INSTANTIATE_TEST_SUITE_P(Files, AmountsOfCorpus, testing::ValuesIn(kCorpus),
                         [](const testing::TestParamInfo<CorpusCase>& test)
                         {
                             std::string name = test.param.file;
                             name.erase(name.rfind('.'));
                             return name;
                         });

class Amounts : public OrderFilesTest
{
};

TEST_F(Amounts, ObjectHasTheseKeys)
{
    const std::string order = Transfers({Group("G1", {"EUR 10.00"}), Group("G2", {"EUR 1.234"})});

    const auto json = RunSigncheck({"amounts", order, "--json"}).Json();

    EXPECT_EQ(KeysOf(json),
              (std::set<std::string>{"file", "format", "total", "largestOrder", "orders",
                                     "currency", "remittances", "errors", "warnings"}));
    ASSERT_EQ(json["remittances"].size(), 2U);
    EXPECT_EQ(KeysOf(json["remittances"][0]),
              (std::set<std::string>{"total", "currency", "orders"}));
    ASSERT_EQ(json["errors"].size(), 1U);
    EXPECT_EQ(KeysOf(json["errors"][0]), (std::set<std::string>{"record", "number", "text"}));
}

TEST_F(Amounts, RemittancesHaveTheirTotalsAndOrderCounts)
{
    const std::string order =
        Transfers({Group("G1", {"EUR 10.00", "EUR 20.00"}), Group("G2", {"EUR 5.50"})});

    const auto json = RunSigncheck({"amounts", order, "--json"}).Json();

    EXPECT_EQ(json["total"], 35.5);
    EXPECT_EQ(json["largestOrder"], 20.0);
    EXPECT_EQ(json["orders"], 3);
    EXPECT_EQ(json["currency"], "EUR");
    EXPECT_EQ(json["remittances"],
              nlohmann::json::parse(R"([{"total": 30.00, "currency": "EUR", "orders": 2},
                                        {"total": 5.50, "currency": "EUR", "orders": 1}])"));
    EXPECT_TRUE(json["errors"].empty());
    EXPECT_TRUE(json["warnings"].empty());
}

TEST_F(Amounts, SeveralCurrenciesAreARowEachAndAWarning)
{
    const std::string order =
        Transfers({Group("G1", {"EUR 10.00", "USD 20.00", "EUR 1.00"}), Group("G2", {"JPY 300"})});

    const Answer answer = RunSigncheck({"amounts", order, "--json"});

    const auto json = answer.Json();
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(json["remittances"],
              nlohmann::json::parse(R"([{"total": 11.00, "currency": "EUR", "orders": 2},
                                        {"total": 20.00, "currency": "USD", "orders": 1},
                                        {"total": 300, "currency": "JPY", "orders": 1}])"));
    EXPECT_EQ(json["total"], 331.0);
    EXPECT_EQ(json["currency"], "JPY") << "the last remittance's, as in a check";
    ASSERT_EQ(json["warnings"].size(), 1U);
    EXPECT_THAT(json["warnings"][0].get<std::string>(),
                AllOf(HasSubstr("3 currencies"), HasSubstr("adds their amounts as they stand")));
    EXPECT_THAT(answer.errors, HasSubstr(json["warnings"][0].get<std::string>()));
}

TEST_F(Amounts, ErrorsNameRecordNumberAndText)
{
    const Answer answer = RunSigncheck({"amounts", Corpus("pain001_wrong_group.xml"), "--json"});

    EXPECT_EQ(answer.status, 1);
    const auto errors = answer.Json()["errors"];
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors[0]["record"], "1");
    EXPECT_EQ(errors[0]["number"], 3);
    EXPECT_THAT(errors[0]["text"].get<std::string>(), HasSubstr("2 were read"));
    EXPECT_EQ(errors[1]["number"], 4);
}

TEST_F(Amounts, ExactFiguresStandBesideWhatACheckMakesOfThem)
{
    // Each fits; their sum needs more digits than a binary number of 53 bits has.
    const std::string order =
        Transfers({Group("G1", {"EUR 900000000000.01"}), Group("G2", {"EUR 900000000000.01"}),
                   Group("G3", {"EUR 99999999999999.99"})});

    const Answer answer = RunSigncheck({"amounts", order, "--json"});

    EXPECT_EQ(PrintedValue(answer.output, "total"), "101800000000000.01");
    EXPECT_EQ(PrintedValue(answer.output, "largestOrder"), "99999999999999.99");
    const auto warnings = answer.Json()["warnings"];
    ASSERT_EQ(warnings.size(), 2U);
    EXPECT_THAT(warnings[0].get<std::string>(),
                AllOf(HasSubstr("total is 101800000000000.01"), HasSubstr("judges on 27223")));
    EXPECT_THAT(warnings[1].get<std::string>(),
                AllOf(HasSubstr("largest order is 99999999999999.99"),
                      HasSubstr("judges on 922337203685.48")));
}

TEST_F(Amounts, InWordsShowTotalRemittancesAndErrors)
{
    const std::string order =
        Transfers({Group("G1", {"EUR 10.00", "EUR 20.00"}), Group("G2", {"EUR 5.501"})});

    const Answer answer = RunSigncheck({"amounts", order});

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.errors, "");
    EXPECT_EQ(answer.output,
              "Order     " + order +
                  "\n"
                  "Format    ISO20022/pain.001\n"
                  "Total     35.51 EUR\n"
                  "Largest   20.00 EUR\n"
                  "Orders    3\n"
                  "\n"
                  "REMITTANCE                        TOTAL  CUR       ORDERS\n"
                  "----------  ---------------------------  ---  -----------\n"
                  "1                                 30.00  EUR            2\n"
                  "2                                  5.51  EUR            1\n"
                  "\n"
                  "Errors\n"
                  "  Record 2.1, error 12: Amount 5.501 has more decimals than EUR and is rounded "
                  "up\n");
}

TEST_F(Amounts, InWordsListEachCurrency)
{
    const Answer answer = RunSigncheck({"amounts", Corpus("pain001_currencies.xml")});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output,
                HasSubstr("Total     176.00 of several currencies, added as they stand\n"
                          "          25.00 CHF in 1 order\n"
                          "          100.00 EUR in 1 order\n"
                          "          51.00 USD in 2 orders\n"
                          "Largest   100.00 EUR\n"));
    EXPECT_THAT(answer.errors, StartsWith("signcheck: WARNING: the orders have 3 currencies"));
}

TEST_F(Amounts, FileWithoutAnOrderHasNoAmounts)
{
    const Answer answer = RunSigncheck({"amounts", Corpus("pain001_no_group.xml"), "--json"});

    EXPECT_EQ(answer.status, 1) << answer.errors;
    EXPECT_EQ(PrintedValue(answer.output, "total"), "0");
    EXPECT_EQ(PrintedValue(answer.output, "largestOrder"), "0");
    EXPECT_EQ(answer.Json()["currency"], "");
    EXPECT_TRUE(answer.Json()["remittances"].empty());
    EXPECT_EQ(answer.Json()["errors"][0]["number"], 43);
    EXPECT_EQ(answer.Json()["errors"][0]["record"], "");
    EXPECT_THAT(RunSigncheck({"amounts", m_folder.Path("pain001_no_group.xml")}).output,
                HasSubstr("\n  Line 4, error 43: The file holds no order\n"));
}

} // namespace
} // namespace testing_support
