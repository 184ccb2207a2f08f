#include "engine/convert.h"
#include "engine/failure.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

using engine::Failure;
using engine::FailureNumber;
using engine::Work;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

std::optional<Failure> FailureOf(Work work, const std::string& order, const std::string& stem)
{
    try
    {
        engine::Convert(work, order, stem);
    }
    catch (const Failure& failure)
    {
        return failure;
    }
    return std::nullopt;
}

std::string Transfer(const std::string& name)
{
    return "<Document><CstmrCdtTrfInitn><GrpHdr><NbOfTxs>1</NbOfTxs></GrpHdr><PmtInf><CdtTrfTxInf>"
           "<Amt><InstdAmt Ccy=\"EUR\">1.00</InstdAmt></Amt><Cdtr><Nm>" +
           name + "</Nm></Cdtr></CdtTrfTxInf></PmtInf></CstmrCdtTrfInitn></Document>";
}

std::string Nested(std::size_t depth)
{
    std::string open;
    std::string close;
    for (std::size_t i = 0; i < depth; ++i)
    {
        open += "<a>";
        close += "</a>";
    }
    return open + close;
}

struct HostileCase
{
    const char* name;
    Work work;
    std::string bytes;
    FailureNumber number;
    const char* says;
};

void PrintTo(const HostileCase& hostile, std::ostream* stream)
{
    *stream << hostile.name;
}

const HostileCase kHostileCases[] = {
    {"DocumentType", Work::Pain001, "<!DOCTYPE Document [<!ELEMENT a ANY>]>\n" + Transfer("x"),
     FailureNumber::Hostile, "document type declaration"},
    {"EntityDeclaration", Work::Pain001,
     "<!DOCTYPE d [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>\n" + Transfer("&e;"),
     FailureNumber::Hostile, "document type declaration"},
    {"ExternalDocumentType", Work::Pain001,
     "<!DOCTYPE d SYSTEM \"http://127.0.0.1:1/d.dtd\">\n" + Transfer("x"), FailureNumber::Hostile,
     "document type declaration"},
    {"UnknownEntity", Work::Pain001, Transfer("&e;"), FailureNumber::Malformed, "line 1"},
    {"NestedTooDeep", Work::Pain001, Transfer(Nested(300)), FailureNumber::Hostile,
     "nested deeper than 256"},
    {"TextOfTwoMebibytes", Work::Pain001, Transfer(std::string(2U << 20U, 'x')),
     FailureNumber::Hostile, "longer than 1 MiB"},
    {"Truncated", Work::Pain001, Transfer("x").substr(0, 120), FailureNumber::Malformed, "line 1"},
    {"NulByte", Work::Pain001, Transfer(std::string("a\0b", 3)), FailureNumber::Malformed,
     "line 1"},
    {"BytesThatAreNoUtf8", Work::Pain001, Transfer("\xC3\x28"), FailureNumber::Malformed, "line 1"},
    {"NoXml", Work::Pain001, "0302 no xml at all", FailureNumber::Malformed, "line 1"},
    {"AnotherMessage", Work::Pain001, "<Document><CstmrDrctDbtInitn/></Document>",
     FailureNumber::NotThisFormat, "holds no pain.001 message"},
    {"NoDirectDebit", Work::Pain008, Transfer("x"), FailureNumber::NotThisFormat,
     "holds no pain.008 message"},
    {"EmptyXml", Work::Pain001, "", FailureNumber::NotThisFormat, "is empty"},
    {"EmptyTransfers", Work::Cfonb160, "", FailureNumber::NotThisFormat, "is empty"},
    {"TransfersWithoutHeader", Work::Cfonb160, std::string(160, 'x'), FailureNumber::NotThisFormat,
     "header record 03"},
    {"NulBytesOnly", Work::Cfonb160, std::string(4000, '\0'), FailureNumber::NotThisFormat,
     "header record 03"},
    {"InternationalWithoutHeader", Work::Cfonb320, "0302" + std::string(316, ' '),
     FailureNumber::NotThisFormat, "header record 03PI"},
    {"EndlessLine", Work::Mt101, ":20:A\n" + std::string(100000, 'x'), FailureNumber::NotThisFormat,
     "line 2: longer than"},
    {"MessageWithoutReference", Work::Mt101, ":32B:EUR1,\n", FailureNumber::NotThisFormat,
     "no field :20:"},
};

class HostileFile : public testing::TestWithParam<HostileCase>
{
};

} // namespace

TEST_P(HostileFile, IsRefusedAndLeavesNothing)
{
    const testing_support::TemporaryFolder folder;
    const std::string order = folder.Write("order.txt", GetParam().bytes);

    const auto failure = FailureOf(GetParam().work, order, order + ".veu");

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), GetParam().number) << failure->Text();
    EXPECT_THAT(failure->Text(), HasSubstr(GetParam().says));
    EXPECT_THAT(failure->Text(), HasSubstr(order));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.txt"));
}

INSTANTIATE_TEST_SUITE_P(Files, HostileFile, testing::ValuesIn(kHostileCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Conversion, MissingOrderFileIsNamed)
{
    const testing_support::TemporaryFolder folder;
    const std::string order = folder.Path("missing.xml");
    const auto failure = FailureOf(Work::Pain001, order, order + ".veu");
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::InputUnreadable);
    EXPECT_THAT(failure->Text(), HasSubstr(order));
    EXPECT_TRUE(engine_tests::Names(folder.Path()).empty());
}

TEST(Conversion, FolderThatCannotBeWrittenIsNamed)
{
    const testing_support::TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    const auto failure = FailureOf(Work::Pain001, order, folder.Path("nowhere/order.xml.veu"));
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::OutputUnwritable);
    EXPECT_THAT(failure->Text(), HasSubstr(folder.Path("nowhere")));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

TEST(Conversion, LeftoversOfAnEarlierRunAreReplaced)
{
    const testing_support::TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    folder.Write("order.xml.veu.bp", "leftover");
    EXPECT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    EXPECT_THAT(testing_support::ReadWholeFile(order + ".veu.bp"),
                testing::StartsWith("RECORD;CORPS;TOTAL;DEVISE\r\n"));
}

TEST(Conversion, QuotesLineEndsAndTrailingBackslashesCannotBreakARow)
{
    const testing_support::TemporaryFolder folder;
    const std::string order =
        folder.Write("order.xml", Transfer("A \"quoted\";\nname with a final \\"));
    ASSERT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    const auto rows = engine_tests::ReadRows(order + ".veu.cp", 4);
    ASSERT_EQ(rows.size(), 1U);
    ASSERT_EQ(rows[0].size(), 18U);
    EXPECT_EQ(rows[0][13], "A 'quoted'; name with a final /");
}

TEST(Conversion, TextsAreWindows1252)
{
    const testing_support::TemporaryFolder folder;
    const std::string order =
        folder.Write("order.xml", Transfer("Caf\xC3\xA9 \xE2\x82\xAC \xC5\x81"));
    ASSERT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.cp", 4).at(0).at(13), "Caf\xE9 \x80 ?");
}
