// signcheck convert: which work files there are, and which stay.

#include "tests/host/order_files.h"
#include "tests/testing/platform.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <map>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class Convert : public OrderFilesTest
{
protected:
    // Two remittances, three orders, one of them with an error.
    std::string OrderFile() const
    {
        return Transfers({Group("G1", {"EUR 10.00", "USD 20.00"}), Group("G2", {"EUR 5.501"})});
    }

    static std::map<std::string, int> RowsByPath(const nlohmann::json& object)
    {
        std::map<std::string, int> rows;
        for (const auto& file : object["workFiles"])
        {
            rows[file["path"]] = file["rows"];
        }
        return rows;
    }
};

TEST_F(Convert, KeepLeavesTheSixWorkFilesAndListsThemWithTheirRows)
{
    const std::string order = OrderFile();

    const Answer answer = RunSigncheck({"convert", order, "--keep", "--json"});

    EXPECT_EQ(answer.status, 1) << "the order file has an error";
    const auto json = answer.Json();
    EXPECT_EQ(json["file"], order);
    EXPECT_EQ(json["format"], "ISO20022/pain.001");
    EXPECT_EQ(json["kept"], true);
    EXPECT_EQ(RowsByPath(json), (std::map<std::string, int>{{order + ".veu.bp", 3},
                                                            {order + ".veu.cp", 3},
                                                            {order + ".veu.cp2", 3},
                                                            {order + ".veu.tot", 5},
                                                            {order + ".veu.err", 1},
                                                            {order + ".veu", 3}}));
    EXPECT_THAT(Names(),
                ElementsAre("order.xml", "order.xml.veu", "order.xml.veu.bp", "order.xml.veu.cp",
                            "order.xml.veu.cp2", "order.xml.veu.err", "order.xml.veu.tot"));
    EXPECT_THAT(ReadWholeFile(order + ".veu.bp"), HasSubstr("\"1\";\"1\";\"10.00\";\"EUR\"\r\n"));
}

TEST_F(Convert, WithoutKeepTellsTheSameAndLeavesNothing)
{
    const std::string order = OrderFile();

    const auto json = RunSigncheck({"convert", order, "--json"}).Json();

    EXPECT_EQ(json["kept"], false);
    EXPECT_EQ(RowsByPath(json).size(), 6U);
    EXPECT_EQ(RowsByPath(json)[order + ".veu.cp"], 3);
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_F(Convert, TellsInWordsWhatWasWritten)
{
    const std::string order = Transfers({Group("G1", {"EUR 10.00"})});

    const Answer without = RunSigncheck({"convert", order});
    const Answer with = RunSigncheck({"convert", order, "--keep"});

    EXPECT_EQ(without.status, 0);
    EXPECT_THAT(without.output, HasSubstr("nothing stays; --keep would leave these work files:"));
    EXPECT_EQ(with.status, 0);
    EXPECT_EQ(with.output, "Order     " + order +
                               "\n"
                               "Format    ISO20022/pain.001\n"
                               "Written   these work files, which stay:\n"
                               "\n"
                               "ROWS  HOLDS                                 PATH\n" +
                               "----  ------------------------------------  " +
                               std::string(order.size() + 8, '-') +
                               "\n"
                               "   1  totals of the remittances             " +
                               order +
                               ".veu.bp\n"
                               "   1  orders                                " +
                               order +
                               ".veu.cp\n"
                               "   1  details of the remittances            " +
                               order +
                               ".veu.cp2\n"
                               "   2  order counts of remittances and file  " +
                               order +
                               ".veu.tot\n"
                               "   0  errors in the order file              " +
                               order +
                               ".veu.err\n"
                               "   2  summary in words                      " +
                               order + ".veu\n");
}

TEST_F(Convert, KeptWorkFilesAreNotReplacedByAnotherRun)
{
    const std::string order = Transfers({Group("G1", {"EUR 10.00"})});
    ASSERT_EQ(RunSigncheck({"convert", order, "--keep"}).status, 0);
    const std::string kept = ReadWholeFile(order + ".veu.cp");

    for (const std::vector<std::string>& again : {std::vector<std::string>{"convert", order},
                                                  {"convert", order, "--keep"},
                                                  {"amounts", order},
                                                  {"display", order}})
    {
        const Answer answer = RunSigncheck(again);
        EXPECT_EQ(answer.status, 3);
        EXPECT_THAT(answer.errors, HasSubstr("signcheck convert --keep"));
    }
    EXPECT_EQ(ReadWholeFile(order + ".veu.cp"), kept);
    EXPECT_EQ(Names().size(), 7U);
}

TEST_F(Convert, KeptWorkFilesAreForTheirOwnerOnly)
{
    const std::string order = Transfers({Group("G1", {"EUR 10.00"})});
    ASSERT_EQ(RunSigncheck({"convert", order, "--keep"}).status, 0);

    for (const char* const ending : {"", ".bp", ".cp", ".cp2", ".tot", ".err"})
    {
        EXPECT_TRUE(IsForOwnerOnly(order + ".veu" + ending)) << ending;
    }
}

TEST_F(Convert, FailureWithKeepLeavesNothing)
{
    const std::string order = m_folder.Write("order.xml", "<Document>");

    EXPECT_EQ(RunSigncheck({"convert", order, "--keep", "--format", "ISO20022/pain.001"}).status,
              3);
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_F(Convert, SettingsFileMayGiveFormatAndKeep)
{
    const std::string order = Corpus("mt101_bare.txt");
    const std::string settings =
        m_folder.Write("settings.toml", "[convert]\nformat = \"SWIFT/MT101\"\nkeep = true\n");

    const Answer answer = RunSigncheck({"convert", order, "--config", settings, "--json"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["kept"], true);
    EXPECT_TRUE(std::filesystem::exists(order + ".veu.cp"));
}

} // namespace
} // namespace testing_support
