#include "host/order_format.h"

#include "host/format_recognition.h"
#include "host/refusal.h"
#include "tests/engine/corpus_table.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

using host::OptionValues;
using host::OrderFormat;
using host::ReadOrderFormat;
using host::RecogniseOrderFormat;
using testing::AllOf;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

OptionValues FormatOption(const std::string& text)
{
    OptionValues values;
    values.AddUnlessThere("format", {text, "option --format"});
    return values;
}

// The refusal's text; the status is compared on the way.
template <typename Action>
std::string RefusalOf(int status, Action&& action)
{
    try
    {
        action();
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), status) << refusal.what();
        return refusal.what();
    }
    ADD_FAILURE() << "not refused";
    return {};
}

class FormatOfContent : public testing::Test
{
protected:
    std::string Recognised(const std::string& bytes) const
    {
        return RecogniseOrderFormat(m_folder.Write("order", bytes)).Name();
    }

    std::string Refused(const std::string& bytes) const
    {
        const std::string path = m_folder.Write("order", bytes);
        const std::string text = RefusalOf(host::kCouldNotRun, [&] { RecogniseOrderFormat(path); });
        EXPECT_THAT(text, AllOf(HasSubstr(path), HasSubstr("--format ISO20022/pain.001")));
        return text;
    }

    TemporaryFolder m_folder;
};

class FormatOfCorpus : public testing::TestWithParam<CorpusCase>
{
};

struct NameCase
{
    const char* name;
    const char* given;
    const char* format1;
    const char* format2;
};

void PrintTo(const NameCase& each, std::ostream* stream)
{
    *stream << each.given;
}

const NameCase kNameCases[] = {
    {"Transfers", "ISO20022/pain.001", "ISO20022", "pain.001"},
    {"DirectDebits", "ISO20022/pain.008", "ISO20022", "pain.008"},
    {"Domestic", "CFONB/160", "CFONB", "160"},
    {"International", "CFONB/320", "CFONB", "320"},
    {"Swift", "SWIFT/MT101", "SWIFT", "MT101"},
    {"CaseDoesNotCount", "iso20022/PAIN.001", "ISO20022", "pain.001"},
};

class NamedFormat : public testing::TestWithParam<NameCase>
{
};

struct RemedyCase
{
    const char* name;
    const char* given;
    const char* expected;
};

void PrintTo(const RemedyCase& each, std::ostream* stream)
{
    *stream << each.given;
}

const RemedyCase kRemedyCases[] = {
    {"SecondHalfAlone", "pain.001", "Did you mean ISO20022/pain.001?"},
    {"WithItsVersion", "pain.008.001.02", "Did you mean ISO20022/pain.008?"},
    {"Mistyped", "SWIFT/MT-101", "Did you mean SWIFT/MT101?"},
    {"MistypedAuto", "aut", "Did you mean auto?"},
    {"NothingNear", "EDIFACT/PAYMUL", "Give one of ISO20022/pain.001, "},
    {"Empty", "", "Give one of ISO20022/pain.001, "},
};

class UnknownFormat : public testing::TestWithParam<RemedyCase>
{
};

struct ContentCase
{
    const char* name;
    std::string bytes;
    const char* expected;
};

void PrintTo(const ContentCase& each, std::ostream* stream)
{
    *stream << each.name;
}

std::string Utf16(const std::string& ascii, bool bigEndFirst, bool mark)
{
    std::string bytes = !mark ? "" : bigEndFirst ? "\xFE\xFF" : "\xFF\xFE";
    for (const char character : ascii)
    {
        bytes += bigEndFirst ? std::string{'\0', character} : std::string{character, '\0'};
    }
    return bytes;
}

std::string Utf16Declared(bool bigEndFirst, bool mark)
{
    return Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><Document><CstmrDrctDbtInitn/>"
                 "</Document>",
                 bigEndFirst, mark);
}

const ContentCase kContentCases[] = {
    {"XmlWithoutDeclaration", "<Document><CstmrCdtTrfInitn/></Document>", "ISO20022/pain.001"},
    {"XmlBehindAByteOrderMark", "\xEF\xBB\xBF<Document><CstmrDrctDbtInitn/></Document>",
     "ISO20022/pain.008"},
    {"XmlBehindBlankLines", "\r\n\n  <Document><CstmrCdtTrfInitn/></Document>",
     "ISO20022/pain.001"},
    {"XmlWithAPrefix", "<ns2:Document xmlns:ns2='urn:x'><ns2:CstmrDrctDbtInitn/></ns2:Document>",
     "ISO20022/pain.008"},
    {"CommentsAndInstructionsFirst",
     "<?xml version='1.0'?><!-- <CstmrDrctDbtInitn> pain.008 --><?app <pain.008?>"
     "<Document><!-- :20: --><CstmrCdtTrfInitn/></Document>",
     "ISO20022/pain.001"},
    {"FirstTransferVersion", "<Document><pain.001.001.02/></Document>", "ISO20022/pain.001"},
    {"FirstGermanVersion", "<Document><pain.001.002.02/></Document>", "ISO20022/pain.001"},
    {"FirstDebitVersion", "<Document><pain.008.001.01/></Document>", "ISO20022/pain.008"},
    {"EnvelopeWhoseHeaderNamesAnother",
     "<Envelope><AppHdr xmlns='urn:h'><Fr><pain/></Fr><MsgDefIdr>pain.001.001.09</MsgDefIdr>"
     "<CreDt/></AppHdr><Document xmlns='urn:d'><CstmrDrctDbtInitn/></Document></Envelope>",
     "ISO20022/pain.008"},
    {"Utf16LittleEndFirst", Utf16Declared(false, true), "ISO20022/pain.008"},
    {"Utf16BigEndFirst", Utf16Declared(true, true), "ISO20022/pain.008"},
    {"Utf16WithoutAMark", Utf16Declared(false, false), "ISO20022/pain.008"},
    {"Latin1InLowerCase",
     "<?xml version='1.0' encoding='iso-8859-1'?><!-- \xE9 --><D\xE9><CstmrCdtTrfInitn/></D\xE9>",
     "ISO20022/pain.001"},
    {"Windows1252",
     "<?xml version='1.0' encoding='windows-1252'?><!-- \x80 --><D\xE9><CstmrCdtTrfInitn/></D\xE9>",
     "ISO20022/pain.001"},
    {"NamespaceThatIsNoAddress", "<Document xmlns='urn: x'><CstmrCdtTrfInitn/></Document>",
     "ISO20022/pain.001"},
    {"BrokenBehindTheMessageElement", "<Document><CstmrCdtTrfInitn><GrpHdr></Wrong>",
     "ISO20022/pain.001"},
    {"CutBehindTheMessageElement", "<Document><CstmrCdtTrfInitn><GrpHd", "ISO20022/pain.001"},
    {"DomesticTransfers", "0302", "CFONB/160"},
    {"BillsOfExchange", "036000000001", "CFONB/160"},
    {"DirectDebitsOfRecords", "0308", "CFONB/160"},
    {"UnknownOperationCarriedOn", "0399" + std::string(150, ' ') + "\r\n0699", "CFONB/160"},
    {"UnknownOperationWithoutLineEnds", "0399" + std::string(156, ' ') + "0699", "CFONB/160"},
    {"RecordsBehindAByteOrderMark", "\xEF\xBB\xBF\x30\x33PI", "CFONB/320"},
    {"InternationalTransfers", "03PI000001", "CFONB/320"},
    {"RecordsBehindBlankLines", "\r\n   \r\n03PI000001", "CFONB/320"},
    {"RecordsBehindABlankRecord", std::string(160, ' ') + "0302", "CFONB/160"},
    {"SwiftBlocks", "{1:F01BANKFRPPAXXX0000000000}{2:I101BANKDEFFXXXXN}{4:\r\n:20:R\r\n",
     "SWIFT/MT101"},
    {"SwiftOutputBlock", "\x01{1:F01X}{2:O1011200010101BANKDEFFXXXX}{4:\n:20:R\n", "SWIFT/MT101"},
    {"SwiftBlocksBehindADollarSign", "$\r\n${1:F01X}{2:I101BANKDEFFXXXXN}{4:\r\n:20:R\r\n",
     "SWIFT/MT101"},
    {"SwiftBlockFourAlone", "{4:\r\n:20:R\r\n:28D:1/1\r\n-}", "SWIFT/MT101"},
    {"SwiftBare", ":20:R\n:28D:1/1\n", "SWIFT/MT101"},
    {"SwiftBehindAByteOrderMark", "\xEF\xBB\xBF:20:R\n:28D:1/1\n", "SWIFT/MT101"},
    {"SwiftOrderBeforeItsMessage", ":21:O\n:32B:EUR1,\n:20:R\n:28D:1/1\n", "SWIFT/MT101"},
    {"SwiftBehindBlankLines", "\r\n \r\n:20:R\r\n:21R:C\r\n:28D:1/1\r\n", "SWIFT/MT101"},
    {"SwiftFieldOfSeveralLines", ":20:R\n:50H:/ACCOUNT\nNAME\n:28D:1/1\n", "SWIFT/MT101"},
};

class RecognisedContent : public FormatOfContent, public testing::WithParamInterface<ContentCase>
{
};

const ContentCase kRefusedCases[] = {
    {"Empty", "", "it is empty"},
    {"Text", "Dear bank, please pay 100 EUR to Ana.\n", "it begins neither as XML"},
    {"CutWithinTheFirstTag", "<Docu", "it is no well-formed XML: line 1, column "},
    {"BrokenBeforeTheMessageElement", "<Document>\n<A></B>", "it is no well-formed XML: line 2, "},
    {"EncodingThatIsNotRead", "<?xml version='1.0' encoding='EUC-JP'?><A><CstmrCdtTrfInitn/></A>",
     "its encoding 'EUC-JP' is not read; use UTF-8"},
    {"AnotherMessage", "<Document><BkToCstmrStmt/></Document>",
     "its XML holds no pain.001 or pain.008 message (its root element is 'Document')"},
    {"AnotherMessageInANamespaceThatIsNoAddress",
     "<Document xmlns='urn: x'><BkToCstmrStmt/></Document>",
     "its XML holds no pain.001 or pain.008 message (its root element is 'Document')"},
    {"NameInTextOnly", "<A>CstmrCdtTrfInitn</A>", "its XML holds no pain.001 or pain.008 message"},
    {"MessageFarBehind",
     "<Document><!--" + std::string(300 * 1024, 'x') + "--><CstmrCdtTrfInitn/></Document>",
     "its XML begins with no pain.001 or pain.008 message"},
    {"DocumentType",
     "<!DOCTYPE Document [<!ENTITY a 'b'>]><Document><CstmrCdtTrfInitn/></Document>",
     "it holds a document type declaration, which is refused"},
    {"EntityOfTheOutside", "<!DOCTYPE D SYSTEM 'http://127.0.0.1/x'><D><CstmrCdtTrfInitn/></D>",
     "it holds a document type declaration, which is refused"},
    {"StatementOfRecords", "0130004    00001EUR2 0000000001", "it begins neither as XML"},
    {"UnknownOperation", "0399", "it begins neither as XML"},
    {"UnknownOperationThatChanges", "0399" + std::string(156, ' ') + "0698",
     "it begins neither as XML"},
    {"Digits", "03991234\r\n03991235\r\n", "it begins neither as XML"},
    {"RecordOutOfPlace", "\n 03PI000001", "it begins neither as XML"},
    {"DetailFirst", "0602", "it begins neither as XML"},
    {"RecordsBehindTheEndOfTheFile", "\x1A\x30\x33\x30\x32", "it begins neither as XML"},
    {"SwiftStatement", "{1:F01X}{2:O9401200010101BANKDEFFXXXX}{4:\n:20:R\n:28D:1/1\n",
     "it is a SWIFT message of type 940"},
    {"SwiftBlocksWithinARecord",
     "0399" + std::string(156, ' ') + "\n06021234 {1:F01X}{2:I101BANKDEFFXXXXN}{4:\n:20:R\n",
     "it begins neither as XML"},
    {"BareStatement", ":20:R\n:25:ACCOUNT\n:28C:1/1\n", "it begins neither as XML"},
    {"BareSingleTransfer", ":20:R\n:23B:CRED\n:32A:260101EUR1,\n", "it begins neither as XML"},
    {"BareWithoutItsFirstField", ":28D:1/1\n:20:R\n", "it begins neither as XML"},
    {"ReferenceWithinALine", "see :20:R\nand :28D:1/1\n", "it begins neither as XML"},
};

class RefusedContent : public FormatOfContent, public testing::WithParamInterface<ContentCase>
{
};

template <typename Case>
std::string NameOf(const testing::TestParamInfo<Case>& test)
{
    return test.param.name;
}

} // namespace

TEST_P(NamedFormat, IsTakenAsTheLibraryTakesIt)
{
    const NameCase& expected = GetParam();
    // The file is not looked at.
    EXPECT_EQ(ReadOrderFormat(FormatOption(expected.given), "no such file"),
              (OrderFormat{expected.format1, expected.format2}));
}

INSTANTIATE_TEST_SUITE_P(Names, NamedFormat, testing::ValuesIn(kNameCases), NameOf<NameCase>);

TEST_P(UnknownFormat, IsRefusedWithWhatWasMeant)
{
    const std::string given = GetParam().given;
    const std::string text =
        RefusalOf(host::kUsage, [&] { ReadOrderFormat(FormatOption(given), "no such file"); });
    EXPECT_THAT(text,
                AllOf(HasSubstr("option --format: '" + given + "'"), HasSubstr(GetParam().expected),
                      HasSubstr("ISO20022/pain.001, ISO20022/pain.008, CFONB/160, CFONB/320, "
                                "SWIFT/MT101, or auto")));
}

INSTANTIATE_TEST_SUITE_P(Names, UnknownFormat, testing::ValuesIn(kRemedyCases), NameOf<RemedyCase>);

TEST_P(FormatOfCorpus, IsRecognised)
{
    const CorpusCase& expected = GetParam();
    const std::string file = (std::filesystem::path(SIGNUTILS_CORPUS) / expected.file).string();
    const OrderFormat format{expected.format1, expected.format2};
    EXPECT_EQ(ReadOrderFormat(OptionValues(), file), format);
    EXPECT_EQ(ReadOrderFormat(FormatOption("AUTO"), file), format);
}

INSTANTIATE_TEST_SUITE_P(Files, FormatOfCorpus, testing::ValuesIn(kCorpus),
                         [](const testing::TestParamInfo<CorpusCase>& test)
                         {
                             const std::string name = test.param.file;
                             return name.substr(0, name.rfind('.'));
                         });

TEST_P(RecognisedContent, ShowsItsFormat)
{
    EXPECT_EQ(Recognised(GetParam().bytes), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Beginnings, RecognisedContent, testing::ValuesIn(kContentCases),
                         NameOf<ContentCase>);

TEST_P(RefusedContent, IsRefusedWithItsCause)
{
    EXPECT_THAT(Refused(GetParam().bytes), HasSubstr(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Beginnings, RefusedContent, testing::ValuesIn(kRefusedCases),
                         NameOf<ContentCase>);

// The XML library would tell standard error, in words of its own.
TEST_F(FormatOfContent, BytesOutsideTheStatedEncodingArePrintedNowhere)
{
    // Half a pair, whose other half is a letter.
    const std::string bytes = Utf16("<?xml version='1.0' encoding='UTF-16'?><A>", false, true) +
                              std::string("\0\xD8", 2) + Utf16("a</A>", false, false);
    testing::internal::CaptureStderr();
    const std::string refused = Refused(bytes);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(refused, HasSubstr("it is no well-formed XML: "));
}

TEST_F(FormatOfContent, IsReadFromTheBeginningOfTheFileAlone)
{
    // Larger than what is read: what stands behind it may be anything.
    const std::string behind(std::size_t{4} * 1024 * 1024, '\0');
    EXPECT_EQ(Recognised("<Document><CstmrCdtTrfInitn>" + behind), "ISO20022/pain.001");
}

TEST_F(FormatOfContent, OfAFileThatIsNotThereIsRefused)
{
    const std::string path = m_folder.Path("missing.xml");
    EXPECT_THAT(RefusalOf(host::kCouldNotRun, [&] { RecogniseOrderFormat(path); }),
                AllOf(HasSubstr(path), HasSubstr("cannot be read"), HasSubstr("right to read it")));
}
