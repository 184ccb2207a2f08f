#include "engine/convert.h"
#include "engine/failure.h"
#include "tests/engine/order_texts.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

using engine::FailureNumber;
using engine::Work;
using engine_tests::FailureOf;
using engine_tests::RecordsWithoutLineEnds;
using engine_tests::Transfer;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

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

// Stands for so many letters: the table would hold them in every run of every test.
std::string Filler(std::size_t count)
{
    return "@" + std::to_string(count) + "@";
}

std::string WithFiller(const std::string& bytes)
{
    const std::size_t start = bytes.find('@');
    if (start == std::string::npos)
    {
        return bytes;
    }
    const std::size_t end = bytes.find('@', start + 1U);
    const std::size_t count = std::stoul(bytes.substr(start + 1U, end - start - 1U));
    return bytes.substr(0, start) + std::string(count, 'x') + bytes.substr(end + 1U);
}

std::string ManyAttributes(int count)
{
    std::string attributes;
    for (int i = 0; i < count; ++i)
    {
        attributes += " a" + std::to_string(i) + "=\"\"";
    }
    return attributes;
}

// The element again and again, each time with another number.
std::string DifferentNames(const std::string& element)
{
    const std::size_t number = element.find('%');
    std::string elements;
    for (int i = 0; i < 20'000; ++i)
    {
        elements += element.substr(0, number) + std::to_string(i) + element.substr(number + 1U);
    }
    return elements;
}

// A text of two mebibytes that no single piece shows.
std::string TextInPieces()
{
    std::string pieces;
    for (int i = 0; i < 20; ++i)
    {
        pieces += std::string(100'000, 'x') + "<a/>";
    }
    return pieces;
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
    {"DocumentTypeOfDirectDebits", Work::Pain008,
     "<!DOCTYPE d [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>\n<Document>&b;</Document>",
     FailureNumber::Hostile, "document type declaration"},
    {"NestedTooDeepInDirectDebits", Work::Pain008, Nested(300), FailureNumber::Hostile,
     "nested deeper than 256"},
    {"UnknownEntity", Work::Pain001, Transfer("&e;"), FailureNumber::Malformed, "line 1"},
    {"NestedTooDeep", Work::Pain001, Transfer(Nested(300)), FailureNumber::Hostile,
     "nested deeper than 256"},
    {"TextOfTwoMebibytes", Work::Pain001, Transfer(Filler(2'000'000)), FailureNumber::Hostile,
     "longer than 1 MiB"},
    {"ElementOfHundredMegabytes", Work::Pain001, Transfer(Filler(100'000'000)),
     FailureNumber::Hostile, "longer than 1 MiB"},
    {"TextOfTwoMebibytesInPieces", Work::Pain001, Transfer(TextInPieces()), FailureNumber::Hostile,
     "longer than 1 MiB in pieces"},
    {"CdataOfTwoMebibytes", Work::Pain001, Transfer("<![CDATA[" + Filler(2'000'000) + "]]>"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"AttributeOfTwentyMegabytes", Work::Pain001, Transfer("<a b=\"" + Filler(20'000'000) + "\"/>"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"CommentOfTwentyMegabytes", Work::Pain001, Transfer("<!--" + Filler(20'000'000) + "-->"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"InstructionOfTwentyMegabytes", Work::Pain001, Transfer("<?x " + Filler(20'000'000) + "?>"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"NameOfTwentyMegabytes", Work::Pain001, Transfer("<" + Filler(20'000'000) + "/>"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"ManyDifferentNames", Work::Pain001, Transfer(DifferentNames("<n%/>")), FailureNumber::Hostile,
     "more than 10000 different names"},
    {"ManyNamespaces", Work::Pain001, Transfer(DifferentNames("<a xmlns='urn:%'/>")),
     FailureNumber::Hostile, "more than 10000 different names"},
    {"TagOfManyAttributes", Work::Pain001, Transfer("<a" + ManyAttributes(300) + "/>"),
     FailureNumber::Hostile, "more than 256 attributes"},
    {"TagOfEndlessAttributes", Work::Pain001, Transfer("<a" + ManyAttributes(50'000) + "/>"),
     FailureNumber::Hostile, "markup or CDATA longer than 256 KiB"},
    {"Truncated", Work::Pain001, Transfer("x").substr(0, 120), FailureNumber::Malformed, "line 1"},
    {"TruncatedBetweenElements", Work::Pain001,
     Transfer("x").substr(0, Transfer("x").find("</Cdtr>")), FailureNumber::Malformed,
     ": the file is cut off"},
    {"NulByte", Work::Pain001, Transfer(std::string("a\0b", 3)), FailureNumber::Malformed,
     "line 1"},
    {"BytesOutsideTheStatedEncoding", Work::Pain001,
     "<?xml version='1.0' encoding='us-ascii'?>\n" + Transfer("\x9D"), FailureNumber::Malformed,
     "line"},
    {"BytesThatAreNoUtf8", Work::Pain001, Transfer("\xC3\x28"), FailureNumber::Malformed, "line 1"},
    {"SeveralPartsFromTheBoundaryOn", Work::Pain001,
     "--b1\r\nContent-Type: application/xml\r\n\r\n" + Transfer("x") + "\r\n--b1--\r\n",
     FailureNumber::NotThisFormat, "several parts"},
    {"SeveralPartsFromTheHeadOn", Work::Mt101,
     "MIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b1\r\n\r\n:20:A\r\n",
     FailureNumber::NotThisFormat, "several parts"},
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
    {"RecordsOf155WithoutLineEnds", Work::Cfonb160, RecordsWithoutLineEnds(155),
     FailureNumber::Malformed, "every record has 160 characters"},
    {"InternationalWithoutHeader", Work::Cfonb320, "0302" + std::string(316, ' '),
     FailureNumber::NotThisFormat, "header record 03PI"},
    {"RecordCodeOfControlCharacters", Work::Cfonb160,
     RecordsWithoutLineEnds(160) + std::string("\n\x01\r", 3) + std::string(158, ' '),
     FailureNumber::Malformed, "record 4: unknown record code"},
    {"EndlessRecord", Work::Cfonb160, "0302\n0602" + Filler(20'000'000),
     FailureNumber::NotThisFormat, "line 2: longer than 4096"},
    {"EndlessInternationalRecord", Work::Cfonb320, "03PI\n04PI" + Filler(20'000'000),
     FailureNumber::NotThisFormat, "line 2: longer than 4096"},
    {"EndlessRecordsWithoutLineEnds", Work::Cfonb160,
     RecordsWithoutLineEnds(160) + Filler(20'000'000), FailureNumber::Malformed,
     "record 4: unknown record code"},
    {"EndlessLine", Work::Mt101, ":20:A\n" + std::string(100000, 'x'), FailureNumber::NotThisFormat,
     "line 2: longer than"},
    {"MessageWithoutReference", Work::Mt101, ":32B:EUR1,\n", FailureNumber::NotThisFormat,
     "no field :20:"},
};

bool IsOneLine(const std::string& text)
{
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20U; });
}

bool HasPosition(const std::string& text)
{
    const std::regex position("(line|record) [1-9][0-9]*");
    return std::regex_search(text, position);
}

class HostileFile : public testing::TestWithParam<HostileCase>
{
};

} // namespace

TEST_P(HostileFile, IsRefusedAndLeavesNothing)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.txt", WithFiller(GetParam().bytes));

    const auto failure = FailureOf(GetParam().work, order, order + ".veu");

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), GetParam().number) << failure->Text();
    EXPECT_THAT(failure->Text(), HasSubstr(GetParam().says));
    EXPECT_THAT(failure->Text(), HasSubstr(order));
    EXPECT_TRUE(IsOneLine(failure->Text())) << failure->Text();
    EXPECT_TRUE(HasPosition(failure->Text()) || failure->Number() == FailureNumber::NotThisFormat)
        << failure->Text();
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.txt"));
}

INSTANTIATE_TEST_SUITE_P(Files, HostileFile, testing::ValuesIn(kHostileCases),
                         [](const auto& test) { return std::string(test.param.name); });

// The XML library would tell the host's standard error, in words of its own.
TEST(Conversion, BytesOutsideTheStatedEncodingArePrintedNowhere)
{
    const TemporaryFolder folder;
    const std::string order =
        folder.Write("order.xml", "<?xml version='1.0' encoding='us-ascii'?>\n" + Transfer("\x9D"));
    testing::internal::CaptureStderr();
    const auto failure = FailureOf(Work::Pain001, order, order + ".veu");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(failure.has_value());
}

TEST(Conversion, ErrorHandlersOfTheHostAreAsTheyWere)
{
    const TemporaryFolder folder;
    int context = 0;
    xmlSetStructuredErrorFunc(&context, [](void*, xmlErrorPtr) { ADD_FAILURE() << "called"; });
    const xmlStructuredErrorFunc handler = xmlStructuredError;
    const xmlGenericErrorFunc printer = xmlGenericError;
    FailureOf(Work::Pain001, folder.Write("order.xml", "<a>&e;</a>"), folder.Path("work"));
    EXPECT_EQ(xmlStructuredError, handler);
    EXPECT_EQ(xmlStructuredErrorContext, &context);
    EXPECT_EQ(xmlGenericError, printer);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(Conversion, MissingOrderFileIsNamed)
{
    const TemporaryFolder folder;
    const std::string order = folder.Path("missing.xml");
    const auto failure = FailureOf(Work::Pain001, order, order + ".veu");
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::InputUnreadable);
    EXPECT_THAT(failure->Text(), HasSubstr(order));
    EXPECT_TRUE(engine_tests::Names(folder.Path()).empty());
}

TEST(Conversion, FolderThatCannotBeWrittenIsNamed)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    const auto failure = FailureOf(Work::Pain001, order, folder.Path("nowhere/order.xml.veu"));
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::OutputUnwritable);
    EXPECT_THAT(failure->Text(), HasSubstr(folder.Path("nowhere")));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

TEST(Conversion, LongPathLeavesRoomForLineAndPosition)
{
    constexpr std::size_t kKeptByCallers = 255;
    const TemporaryFolder folder;
    const std::string deep = folder.Path(std::string(120, 'a') + "/" + std::string(120, 'b'));
    std::filesystem::create_directories(deep);
    const std::string order = deep + "/order.xml";
    std::ofstream(order) << "<Document>\n</Wrong>";
    const auto failure = FailureOf(Work::Pain001, order, order + ".veu");
    ASSERT_TRUE(failure.has_value());
    EXPECT_LE(failure->Text().size(), kKeptByCallers);
    EXPECT_THAT(failure->Text(),
                AllOf(HasSubstr("Order file ...bbb"), HasSubstr("/order.xml is no"),
                      HasSubstr("line 2, column ")));
}

TEST(Conversion, FolderThatIsAFileIsNamed)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    const auto failure = FailureOf(Work::Pain001, order, order + "/order.xml.veu");
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::OutputUnwritable);
    EXPECT_THAT(failure->Text(), HasSubstr("in folder " + order));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

// Another folder of the name of a work file: five files are published before it fails.
TEST(Conversion, WorkFileThatCannotTakeItsNameTakesTheOthersBack)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    ASSERT_TRUE(std::filesystem::create_directory(order + ".veu"));
    const auto failure = FailureOf(Work::Pain001, order, order + ".veu");
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->Number(), FailureNumber::OutputUnwritable);
    EXPECT_THAT(failure->Text(), HasSubstr("in folder " + folder.Path()));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml", "order.xml.veu"));
}

TEST(Conversion, LeftoversOfAnEarlierRunAreReplaced)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", Transfer("x"));
    folder.Write("order.xml.veu.bp", "leftover");
    EXPECT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    EXPECT_THAT(testing_support::ReadWholeFile(order + ".veu.bp"),
                testing::StartsWith("RECORD;CORPS;TOTAL;DEVISE\r\n"));
}

TEST(Conversion, QuotesLineEndsAndTrailingBackslashesCannotBreakARow)
{
    const TemporaryFolder folder;
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
    const TemporaryFolder folder;
    const std::string order =
        folder.Write("order.xml", Transfer("Caf\xC3\xA9 \xE2\x82\xAC \xC5\x81"));
    ASSERT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.cp", 4).at(0).at(13), "Caf\xE9 \x80 ?");
}

TEST(Conversion, LongTextsAreCutBeforeTheyMultiply)
{
    const TemporaryFolder folder;
    std::string texts;
    for (int i = 0; i < 50; ++i)
    {
        texts += "<Ustrd>" + std::string(100, 'u') + "</Ustrd>";
    }
    const std::string order =
        folder.Write("order.xml", Transfer(std::string(5000, 'n') + "</Nm></Cdtr><RmtInf>" + texts +
                                           "</RmtInf><Cdtr><Nm>"));
    ASSERT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    const auto row = engine_tests::ReadRows(order + ".veu.cp", 4).at(0);
    EXPECT_LE(row.at(12).size(), 512U);
    EXPECT_GT(row.at(12).size(), 140U);
}

TEST(Conversion, CurrenciesThatAreNoCodesAreOneSum)
{
    const TemporaryFolder folder;
    std::string orders;
    for (const char* const currency : {"EURO", "eur", "E1R", "\"x", "EUR"})
    {
        orders += "<CdtTrfTxInf><Amt><InstdAmt Ccy='" + std::string(currency) +
                  "'>1.00</InstdAmt></Amt></CdtTrfTxInf>";
    }
    const std::string order =
        folder.Write("order.xml", "<Document><CstmrCdtTrfInitn><PmtInf>" + orders +
                                      "</PmtInf></CstmrCdtTrfInitn></Document>");
    ASSERT_FALSE(FailureOf(Work::Pain001, order, order + ".veu").has_value());
    EXPECT_THAT(
        engine_tests::ReadRows(order + ".veu.bp", 4),
        ElementsAre(ElementsAre("1", "1", "1.00", "EUR"), ElementsAre("1", "1", "4.00", "XXX")));
    EXPECT_EQ(engine_tests::ReadRows(order + ".veu.err", 1).size(), 4U);
}
