// What amounts, display and convert have in common: what they refuse, and that nothing stays
// behind.

#include "host/order_lock.h"
#include "tests/host/order_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class OrderFileCommand : public OrderFilesTest, public testing::WithParamInterface<const char*>
{
protected:
    Answer Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), GetParam());
        return RunSigncheck(arguments);
    }

    // Refused with a message and nothing on standard output.
    std::string RefusalOf(const std::vector<std::string>& arguments, int status) const
    {
        const Answer answer = Run(arguments);
        EXPECT_EQ(answer.status, status) << answer.errors;
        EXPECT_EQ(answer.output, "");
        EXPECT_THAT(answer.errors, StartsWith("signcheck: "));
        return answer.errors;
    }

    std::string Valid() const { return Transfers({Group("G1", {"EUR 10.00", "EUR 20.00"})}); }
};

INSTANTIATE_TEST_SUITE_P(Commands, OrderFileCommand,
                         testing::Values("amounts", "display", "convert"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(OrderFileCommand, LeavesNothingButTheOrderFile)
{
    EXPECT_EQ(Run({Valid()}).status, 0);
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
    EXPECT_EQ(Run({m_folder.Path("order.xml"), "--json"}).status, 0);
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_P(OrderFileCommand, LeavesAnOrderAloneThatAnotherHostHolds)
{
    const std::string order = Valid();
    const host::OrderLock lock(order, "signcheck watch");
    ASSERT_TRUE(lock.IsTaken());

    EXPECT_THAT(RefusalOf({order}, 3),
                AllOf(HasSubstr("is in use by another host (signcheck watch, process "),
                      HasSubstr("Wait until it is done")));
    EXPECT_THAT(Names(), ElementsAre("order.xml", "order.xml.veu.lock"));
}

TEST_P(OrderFileCommand, TakesOverTheLockOfADeadHost)
{
    const std::string order = Valid();
    m_folder.Write("order.xml.veu.lock", "signcheck batch, process 4711 on elsewhere");

    const Answer answer = Run({order});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_P(OrderFileCommand, TellsThatThereIsNoLockAndGoesOn)
{
    const std::string order = Valid();
    std::filesystem::create_directory(Utf8Path(m_folder.Path("order.xml.veu.lock")));

    const Answer answer = Run({order});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("order.xml.veu.lock' cannot be made"));
}

TEST_P(OrderFileCommand, EndsWithFindingsWhenTheOrderFileHasErrors)
{
    const std::string order = Corpus("pain001_wrong_count.xml");

    const Answer answer = Run({order, "--json"});

    EXPECT_EQ(answer.status, 1);
    const auto errors = answer.Json()["errors"];
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0]["number"], 1);
    EXPECT_THAT(errors[0]["text"].get<std::string>(), HasSubstr("states 7 orders, 2 were read"));
    EXPECT_THAT(Run({order}).output, HasSubstr("error 1: The file states 7 orders, 2 were read"));
    EXPECT_THAT(Names(), ElementsAre("pain001_wrong_count.xml"));
}

TEST_P(OrderFileCommand, ReadsEveryFormat)
{
    for (const char* const name : {"pain001_v09.xml", "pain008_v02.xml", "cfonb160_transfers.txt",
                                   "cfonb320_one_currency.txt", "mt101_blocks.txt"})
    {
        const Answer answer = Run({Corpus(name)});
        EXPECT_EQ(answer.status, 0) << name << answer.errors;
        EXPECT_EQ(answer.errors, "") << name;
    }
}

TEST_P(OrderFileCommand, WithoutAFileTellsHowToGiveIt)
{
    EXPECT_THAT(RefusalOf({}, 64), AllOf(HasSubstr("argument FILE is missing"),
                                         HasSubstr(std::string("signcheck ") + GetParam())));
}

TEST_P(OrderFileCommand, RefusesAFileThatIsNotThere)
{
    EXPECT_THAT(RefusalOf({m_folder.Path("none.xml")}, 64), HasSubstr("there is no file"));
    EXPECT_THAT(RefusalOf({m_folder.Path()}, 64), HasSubstr("is a folder"));
}

TEST_P(OrderFileCommand, TakesForTheFileWhatStandsBehindTwoDashes)
{
    EXPECT_EQ(Run({"--", Valid()}).status, 0);
    EXPECT_THAT(RefusalOf({"--", "-none.xml"}, 64), HasSubstr("there is no file '-none.xml'"));
    EXPECT_THAT(RefusalOf({"--", Valid(), "-more"}, 64), HasSubstr("unknown option '-more'"));
}

TEST_P(OrderFileCommand, RefusesAnUnknownFormat)
{
    EXPECT_THAT(RefusalOf({Valid(), "--format", "EDIFACT"}, 64),
                AllOf(HasSubstr("option --format: 'EDIFACT'"), HasSubstr("ISO20022/pain.001")));
}

TEST_P(OrderFileCommand, RefusesContentOfNoKnownFormat)
{
    EXPECT_THAT(RefusalOf({m_folder.Write("order.txt", "Dear bank, please pay.\n")}, 3),
                HasSubstr("order.txt"));
}

TEST_P(OrderFileCommand, NamesFileFormatAndPlaceOfWhatCannotBeConverted)
{
    const std::string order = m_folder.Write("order.xml", "<Document>\n<CstmrCdtTrfInitn>\n<PmtInf>"
                                                          "\n</Wrong>");

    EXPECT_THAT(RefusalOf({order, "--format", "ISO20022/pain.001"}, 3),
                AllOf(HasSubstr("'" + order + "' could not be converted as ISO20022/pain.001"),
                      HasSubstr("line 4"), HasSubstr("n°121.")));
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_P(OrderFileCommand, RefusesATruncatedFile)
{
    const std::string whole = ReadWholeFile(Corpus("pain001_groups.xml"));
    const std::string order = m_folder.Write("cut.xml", whole.substr(0, whole.size() / 2));

    EXPECT_THAT(RefusalOf({order, "--format", "ISO20022/pain.001"}, 3), HasSubstr(order));
    EXPECT_THAT(Names(), ElementsAre("cut.xml", "pain001_groups.xml"));
}

TEST_P(OrderFileCommand, RefusesAHostileFile)
{
    const std::string order =
        m_folder.Write("order.xml", "<!DOCTYPE d [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>\n"
                                    "<Document><CstmrCdtTrfInitn><PmtInf>&e;</PmtInf>"
                                    "</CstmrCdtTrfInitn></Document>");

    EXPECT_THAT(RefusalOf({order, "--format", "ISO20022/pain.001"}, 3),
                HasSubstr("document type declaration"));
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

// Whoever runs the tests may write everywhere; no folder takes a name of more than 255 characters.
TEST_P(OrderFileCommand, NamesTheFolderThatTakesNoWorkFile)
{
    const std::string name(250, 'x');
    const std::string order = m_folder.Path(name);
    std::filesystem::rename(Valid(), order);

    const std::string refusal = RefusalOf({order}, 3);

    EXPECT_THAT(refusal, AllOf(HasSubstr("Cannot create work file"),
                               HasSubstr("in folder " + m_folder.Path() + "/"),
                               HasSubstr("must be writable and have space left")));
    EXPECT_THAT(Names(), ElementsAre(name));
}

TEST_P(OrderFileCommand, LeavesWorkFilesOfSomebodyElseAlone)
{
    const std::string order = Valid();
    m_folder.Write("order.xml.veu.cp2", "theirs");
    std::filesystem::create_directory(m_folder.Path("order.xml.veu"));

    const std::string refusal = RefusalOf({order}, 3);

    EXPECT_THAT(refusal,
                AllOf(HasSubstr("are there already ('" + order + ".veu.cp2', '" + order + ".veu')"),
                      HasSubstr("Remove them when nobody needs them")));
    EXPECT_EQ(ReadWholeFile(order + ".veu.cp2"), "theirs");
    EXPECT_THAT(Names(), ElementsAre("order.xml", "order.xml.veu", "order.xml.veu.cp2"));
}

TEST_P(OrderFileCommand, FailureIsOneJsonObjectWhereJsonIsAskedFor)
{
    const std::string order = m_folder.Write("order.xml", "<Document>");

    const Answer answer = Run({order, "--format", "ISO20022/pain.001", "--json"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.Json()["status"], 3);
    EXPECT_THAT(answer.errors, HasSubstr(answer.Json()["error"].get<std::string>()));
}

} // namespace
} // namespace testing_support
