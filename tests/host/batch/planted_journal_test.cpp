// What somebody who may drop orders puts into the drop folder in the hope that a run takes it for
// its progress journal.

#include "host/batch/order_path.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::ElementsAre;
using testing::Pair;

constexpr const char* kPlantedFirstLine = "{\"signcheck\":\"progress\",\"version\":1}\n";

class PlantedJournal : public BatchTest
{
protected:
    /// Lines of the order as it lies there now, under the name that journals once had.
    void Plant(const std::string& begin, const std::string& end) const
    {
        m_orders.Write(".signcheck-progress", kPlantedFirstLine + begin +
                                                  *batch::VersionOf(m_orders.Path("A001.xml")) +
                                                  end);
    }
};

TEST_F(PlantedJournal, MakesNoOtherOrderAnAcceptedOne)
{
    Order("A001.xml");
    EXPECT_EQ(Lines(Batch({"--json"})).at("A001.xml")["outcome"], "success");
    std::string larger = ReadWholeFile(m_orders.Path("A001.xml"));
    const std::size_t amount = larger.find(">100.00<");
    ASSERT_NE(amount, std::string::npos);
    larger.replace(amount, 8, ">90000000.00<");
    m_orders.Write("A001.xml", larger);
    Plant(R"({"begun":"A001.xml","file":")", "\",\"after\":0}\n");
    const std::string planted = ReadWholeFile(m_orders.Path(".signcheck-progress"));

    const auto line = Lines(Batch({"--json"})).at("A001.xml");

    EXPECT_EQ(line["recovered"], false);
    EXPECT_EQ(line["outcome"], "refused");
    EXPECT_EQ(line["total"], 90000250.5);
    EXPECT_EQ(ReadWholeFile(m_orders.Path(".signcheck-progress")), planted);
}

TEST_F(PlantedJournal, KeepsNoOrderFromBeingJudged)
{
    Order("A001.xml");
    Plant(R"({"done":"A001.xml","file":")", "\",\"outcome\":\"success\",\"at\":4102444800}\n");

    const auto lines = Lines(Batch({"--json"}));

    EXPECT_EQ(lines.at("A001.xml")["outcome"], "success");
    EXPECT_EQ(lines.at("")["summary"]["judgedBefore"], 0);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(PlantedJournal, OfAnotherFolderSaysNothingOfThisOne)
{
    Order("A001.xml");
    EXPECT_EQ(Batch().status, 0);
    const TemporaryFolder other;
    std::filesystem::copy(m_orders.Path("A001.xml"), other.Path("A001.xml"));
    std::filesystem::last_write_time(other.Path("A001.xml"),
                                     std::filesystem::last_write_time(m_orders.Path("A001.xml")));

    EXPECT_EQ(Lines(BatchOf(other.Path(), {"--json"})).at("A001.xml")["recovered"], false);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 2)));
}

} // namespace
} // namespace testing_support
