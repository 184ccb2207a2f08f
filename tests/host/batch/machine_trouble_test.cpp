// Orders whose amounts the machine could not work out, and those that are broken themselves.

#include "host/batch/teller.h"
#include "host/conversion_fault.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

namespace fs = std::filesystem;

class MachineTrouble : public BatchTest
{
protected:
    /// Lets no conversion of the order make its work files: a folder that is not empty has the
    /// name of one.
    void Obstruct(const std::string& name) const
    {
        fs::create_directories(m_orders.Path(name + ".veu.cp/taken"));
    }

    void Clear(const std::string& name) const { fs::remove_all(m_orders.Path(name + ".veu.cp")); }
};

TEST_F(MachineTrouble, IsTriedAgainByEachRunUntilItIsOver)
{
    Order("A001.xml");
    Obstruct("A001.xml");
    for (int run = 1; run <= 2; ++run)
    {
        const Answer answer = Batch({"--json"});

        EXPECT_EQ(answer.status, 4) << run;
        const auto lines = Lines(answer);
        const auto& line = lines.at("A001.xml");
        EXPECT_EQ(line["amounts"], "unknown");
        EXPECT_THAT(line["warnings"].dump(), HasSubstr("The next run judges it again"));
        EXPECT_EQ(lines.at("")["summary"]["amountsUnknown"], 1);
        EXPECT_EQ(lines.at("")["summary"]["judgedBefore"], 0);
    }
    Clear("A001.xml");

    const Answer repaired = Batch({"--json"});

    EXPECT_EQ(repaired.status, 0) << repaired.output;
    EXPECT_EQ(Lines(repaired).at("A001.xml")["total"], 350.5);
    EXPECT_EQ(Lines(Batch({"--json"})).at("")["summary"]["judgedBefore"], 1);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 3)));
}

TEST_F(MachineTrouble, IsNotWhatABrokenOrderIs)
{
    const std::string whole = ReadWholeFile(Order("A001.xml"));
    m_orders.Write("A001.xml", whole.substr(0, whole.size() - 20));

    const Answer first = Batch({"--json"});

    EXPECT_EQ(first.status, 4);
    EXPECT_THAT(Lines(first).at("A001.xml")["warnings"].dump(),
                Not(HasSubstr("The next run judges it again")));
    EXPECT_EQ(Lines(Batch({"--json"})).at("")["summary"]["judgedBefore"], 1);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(MachineTrouble, IsTheReasonThatTheLineOfAnOrderOnUnknownAmountsTells)
{
    Order("A001.xml");
    Obstruct("A001.xml");

    EXPECT_THAT(Batch().output,
                AllOf(HasSubstr("UNKNOWN     " + Named("A001.xml") +
                                ": accepted on amounts that are not known: Cannot rename work "
                                "file A001.xml.veu.cp"),
                      Not(HasSubstr("NARR")), Not(HasSubstr("rules are not met"))));
}

TEST(FaultOfTheOrder, IsWhatTheEngineNumbersSo)
{
    for (const char* const told : {"Not that format n\xB0"
                                   "120 ",
                                   "Line 3: broken n\xB0"
                                   "121 ",
                                   "Entities n\xB0"
                                   "122 "})
    {
        EXPECT_TRUE(host::IsOrdersFault(told)) << told;
    }
    for (const char* const told : {"", "Initialize CFFmtRun Error : 2",
                                   "Cannot read order file a (error 5) n\xB0"
                                   "110 ",
                                   "Order file a was changed n\xB0"
                                   "111 ",
                                   "Cannot write work file n\xB0"
                                   "130 ",
                                   "Not enough memory n\xB0"
                                   "140 ",
                                   "The work files of the conversion could not be read"})
    {
        EXPECT_FALSE(host::IsOrdersFault(told)) << told;
    }
}

TEST(FaultOfTheOrder, IsToldWithoutItsNumberByATextThatWasCut)
{
    EXPECT_TRUE(host::IsOrdersFault("Line 3: " + std::string(247, 'x')));
    EXPECT_FALSE(host::IsOrdersFault("Cannot write work file " + std::string(232, 'x')));
}

} // namespace
} // namespace testing_support
