// Orders as rows of CSV, one by one and as a run prints them.

#include "host/batch/result_csv.h"

#include "host/batch/teller.h"
#include "host/rulebook/csv.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace testing_support
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Fields = std::map<std::string, std::string>;

std::vector<std::string> Names()
{
    return rulebook::ReadCsv(batch::ResultNamesAsCsv(), ',', "#").at(0).fields;
}

/// The rows below the line of names, by the names.
std::vector<Fields> RowsOf(const std::string& csv)
{
    const auto records = rulebook::ReadCsv(csv, ',', "#");
    std::vector<Fields> rows;
    for (std::size_t index = 1; index < records.size(); ++index)
    {
        EXPECT_EQ(records[index].fault, "") << records[index].text;
        EXPECT_EQ(records[index].fields.size(), records[0].fields.size());
        Fields& row = rows.emplace_back();
        for (std::size_t field = 0; field < records[index].fields.size(); ++field)
        {
            row[records[0].fields.at(field)] = records[index].fields[field];
        }
    }
    return rows;
}

batch::OrderResult Judged()
{
    batch::OrderResult result;
    result.path = "A001.xml";
    result.ending = batch::Ending::Judged;
    result.request.emplace();
    result.request->fileShown = result.path;
    result.request->partner = "DUPONTSA";
    result.check.ran = true;
    result.check.verdict = 1;
    result.check.rulesComplete = true;
    result.check.amounts.origin = host::AmountsOrigin::Given;
    result.status = host::kDone;
    return result;
}

Fields RowOf(const batch::OrderResult& result)
{
    return RowsOf(batch::ResultNamesAsCsv() + batch::ResultAsCsv(result)).at(0);
}

// An object within the object has columns for its own fields.
void AddNames(const nlohmann::ordered_json& object, const std::string& before,
              std::vector<std::string>& names)
{
    for (const auto& [name, value] : object.items())
    {
        if (value.is_object())
        {
            AddNames(value, before + name + ".", names);
        }
        else
        {
            names.push_back(before + name);
        }
    }
}

TEST(RowOfAnOrder, HasAColumnForEveryFieldOfTheJsonLines)
{
    batch::OrderResult refused = Judged();
    refused.check.reportHandedOn = true; // its file is an object then
    std::vector<std::string> fields;
    AddNames(batch::ResultAsJson(refused), "", fields);
    fields.emplace_back("error"); // of an order that was not judged

    EXPECT_EQ(Names(), fields);
}

TEST(RowOfAnOrder, KeepsQuotesSeparatorsAccentsAndLineEndsOfNamesWhole)
{
    batch::OrderResult result = Judged();
    result.request->fileShown = "/in/a \"b\", \xC3\xA9t\xC3\xA9\r\nline;2.xml";
    result.request->orderId = "A\",\xE9\n1";
    result.check.reasonText = "Holder \"X\", limit 5\nsecond line";

    const std::string line = batch::ResultAsCsv(result);
    const Fields row = RowOf(result);

    EXPECT_THAT(line, StartsWith("\"/in/a \"\"b\"\", \xC3\xA9t\xC3\xA9\r\nline;2.xml\","));
    EXPECT_TRUE(line.ends_with("\r\n"));
    EXPECT_EQ(row.at("file"), result.request->fileShown);
    EXPECT_EQ(row.at("orderId"), "A\",\xC3\xA9\n1");
    EXPECT_EQ(row.at("reasonText"), result.check.reasonText);
    EXPECT_EQ(row.at("contract.partner"), "DUPONTSA");
}

TEST(RowOfAnOrder, KeepsFormulasFromASpreadsheet)
{
    batch::OrderResult result = Judged();
    result.request->fileShown = "=HYPERLINK(1).xml";
    result.request->signerNames = {"@Ana", "Bo"};

    const Fields row = RowOf(result);

    EXPECT_EQ(row.at("file"), "'=HYPERLINK(1).xml");
    EXPECT_EQ(row.at("signers"), "'@Ana;Bo");
}

TEST(RowOfAnOrder, JoinsListsAndLeavesOutWhatIsNotKnown)
{
    batch::OrderResult result = Judged();
    result.request->signerNames = {"Ana Ruiz", "Bo Li"};
    result.check.warnings = {"One thing.", "Another."};
    result.check.amounts.origin = host::AmountsOrigin::Unknown;

    const Fields row = RowOf(result);

    EXPECT_EQ(row.at("signers"), "Ana Ruiz;Bo Li");
    EXPECT_EQ(row.at("warnings"), "One thing. Another.");
    EXPECT_EQ(row.at("total"), "");
    EXPECT_EQ(row.at("reportFile.path"), "");
    EXPECT_EQ(row.at("contract.distributed"), "false");
}

TEST(RowOfAnOrder, HasMillisecondsAndAmountsWithTheirDecimals)
{
    batch::OrderResult result = Judged();
    result.seconds = 0.0042;
    result.check.amounts.total = 900.0;
    result.check.amounts.largest = 123456789012.5;

    const Fields row = RowOf(result);

    EXPECT_EQ(row.at("seconds"), "0.004");
    EXPECT_EQ(row.at("total"), "900.00");
    EXPECT_EQ(row.at("largestOrder"), "123456789012.50");
}

TEST(RowOfAnOrder, ThatWasNotJudgedHasTheReasonAndAsManyFields)
{
    batch::OrderResult result;
    result.path = "A001.xml";
    result.error = "the database \"bank\" is away, PWD=secret;";

    const Fields row = RowOf(result);

    EXPECT_THAT(row, SizeIs(Names().size()));
    EXPECT_EQ(row.at("file"), "A001.xml");
    EXPECT_EQ(row.at("outcome"), "not-run");
    EXPECT_EQ(row.at("verdict"), "");
    EXPECT_EQ(row.at("status"), "3");
    EXPECT_THAT(row.at("error"), StartsWith("the database \"bank\" is away"));
    EXPECT_THAT(row.at("error"), testing::Not(HasSubstr("secret")));
}

class OrdersAsCsv : public BatchTest
{
};

TEST_F(OrdersAsCsv, AreALineOfNamesAndARowAnOrder)
{
    const std::string odd = "\xC3\xA9t\xC3\xA9, A001.xml";
    Order(odd);
    Order("A002.xml");
    m_orders.Write("A003.xml", "no order");

    const Answer answer = Batch({"--output-format", "csv", "--jobs", "1", "--order-id", "A\"1"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.output, StartsWith("file,signers,verdict,outcome,format,total,"));
    std::map<std::string, Fields> rows;
    for (const Fields& row : RowsOf(answer.output))
    {
        rows[row.at("file")] = row;
    }
    ASSERT_THAT(rows, SizeIs(3));
    const Fields& first = rows.at(Named(odd));
    EXPECT_EQ(first.at("outcome"), "success");
    EXPECT_EQ(first.at("signers"), "\xC3\x89lodie Lef\xC3\xA8vre");
    EXPECT_EQ(first.at("total"), "350.50");
    EXPECT_EQ(first.at("orderId"), "A\"1");
    EXPECT_EQ(first.at("rows.written"), "1");
    EXPECT_EQ(first.at("recovered"), "false");
    EXPECT_EQ(rows.at(Named("A003.xml")).at("outcome"), "not-run");
    EXPECT_THAT(rows.at(Named("A003.xml")).at("error"), HasSubstr("format"));
    EXPECT_THAT(answer.errors, StartsWith("signcheck: 2 accepted, 0 refused"));
    EXPECT_EQ(std::count(answer.errors.begin(), answer.errors.end(), '\n'), 1);
}

TEST_F(OrdersAsCsv, OfAnEmptyFolderAreTheLineOfNames)
{
    const Answer answer = Batch({"--output-format", "csv"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, batch::ResultNamesAsCsv());
    EXPECT_THAT(RowsOf(answer.output), IsEmpty());
}

TEST_F(OrdersAsCsv, AreRefusedBesideJson)
{
    const Answer answer = Batch({"--output-format", "csv", "--json"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.output + answer.errors, HasSubstr("contradicts --json"));
    EXPECT_EQ(RecordsWritten(), 0U);
}

} // namespace
} // namespace testing_support
