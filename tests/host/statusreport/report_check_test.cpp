// signcheck report check: what is wrong with a status report, and what it says.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kValid =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.002.001.02\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
    " <pain.002.001.02>\n"
    "  <GrpHdr>\n"
    "   <MsgId>RPT-1</MsgId>\n"
    "   <CreDtTm>2026-03-29T14:05:09</CreDtTm>\n"
    "   <InitgPty><Id><OrgId><BkPtyId>QZBKFRPP</BkPtyId></OrgId></Id></InitgPty>\n"
    "  </GrpHdr>\n"
    "  <OrgnlGrpInfAndSts>\n"
    "   <OrgnlMsgId>A002</OrgnlMsgId>\n"
    "   <OrgnlMsgNmId>pain.001.001.03</OrgnlMsgNmId>\n"
    "    <OrgnlNbOfTxs>3</OrgnlNbOfTxs>\n"
    "    <OrgnlCtrlSum>1500.00</OrgnlCtrlSum>\n"
    "   <GrpSts>RJCT</GrpSts>\n"
    "   <StsRsnInf>\n"
    "      <StsRsn>\n"
    "         <Cd>AM02</Cd>\n"
    "      </StsRsn>\n"
    "      <AddtlStsRsnInf>Total above the holder's limit: Hélène Garçon</AddtlStsRsnInf>\n"
    "   </StsRsnInf>\n"
    "  </OrgnlGrpInfAndSts>\n"
    " </pain.002.001.02>\n"
    "</Document>";

class ReportCheck : public testing::Test
{
protected:
    Answer CheckText(const std::string& document)
    {
        m_file = m_folder.Write("report.psr", document);
        return RunSigncheck({"report", "check", m_file});
    }

    // The valid report with one place changed.
    Answer CheckWith(const std::string& place, const std::string& instead)
    {
        std::string document = kValid;
        const std::size_t at = document.find(place);
        EXPECT_NE(at, std::string::npos) << place;
        return CheckText(document.replace(at, place.size(), instead));
    }

    void ExpectFault(const Answer& answer, const std::string& sentence)
    {
        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.output, HasSubstr("Valid     no, 1 fault:"));
        std::string text = answer.output;
        // File names are long: the sentence may break anywhere behind them.
        std::erase(text, '\n');
        std::string flat;
        for (const char letter : text)
        {
            if (letter != ' ' || flat.empty() || flat.back() != ' ')
            {
                flat += letter;
            }
        }
        EXPECT_THAT(flat, HasSubstr(sentence));
    }

    TemporaryFolder m_folder;
    std::string m_file;
};

TEST_F(ReportCheck, AValidOneIsShownInWords)
{
    const Answer answer = CheckText(kValid);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Message   RPT-1, written 2026-03-29 14:05:09 by QZBKFRPP\n"),
                      HasSubstr("Order     A002, sent as pain.001.001.03; 3 payments, 1500.00 in "
                                "all\n"),
                      HasSubstr("Status    RJCT: rejected\n"),
                      HasSubstr("Reason    AM02: the amount is not allowed\n"
                                "          Total above the holder's limit: Hélène Garçon\n"),
                      HasSubstr("Valid     yes, as pain.002.001.02\n")));
}

TEST_F(ReportCheck, JsonHasTheSame)
{
    CheckText(kValid);
    const auto json = RunSigncheck({"report", "check", m_file, "--json"}).Json();

    EXPECT_EQ(json["valid"], true);
    EXPECT_EQ(json["status"], "RJCT");
    EXPECT_EQ(json["statusWords"], "rejected");
    EXPECT_EQ(json["reasons"][0]["code"], "AM02");
    EXPECT_EQ(json["faults"].size(), 0U);
}

TEST_F(ReportCheck, AReceptionWithoutReasonsAndTotalsIsValid)
{
    std::string document = kValid;
    document.replace(document.find("RJCT"), 4, "RCVD");
    const std::size_t totals = document.find("    <OrgnlNbOfTxs>");
    document.erase(totals, document.find("   <GrpSts>") - totals);
    const std::size_t reasons = document.find("   <StsRsnInf>");
    document.erase(reasons, document.find("  </OrgnlGrpInfAndSts>") - reasons);

    const Answer answer = CheckText(document);

    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_THAT(answer.output, AllOf(HasSubstr("RCVD: received"), Not(HasSubstr("Reason"))));
}

TEST_F(ReportCheck, AnAmpersandThatIsNotWrittenAsSuchIsToldWithItsLine)
{
    const Answer answer = CheckWith("Hélène Garçon", "Smith & Sons");

    ExpectFault(answer, "report.psr, line 19, the document: is no well-formed XML:");
    ExpectFault(answer, "& is written &amp;");
}

TEST_F(ReportCheck, AnEmptyFileIsNoReport)
{
    ExpectFault(CheckText(""), "is no well-formed XML");
}

TEST_F(ReportCheck, AMissingElementIsNamed)
{
    ExpectFault(CheckWith("   <MsgId>RPT-1</MsgId>\n", ""), "line 4, GrpHdr: lacks MsgId. Add it.");
}

TEST_F(ReportCheck, AnElementOutOfOrderIsNamed)
{
    ExpectFault(CheckWith("   <GrpSts>RJCT</GrpSts>\n   <StsRsnInf>",
                          "   <StsRsnInf/>\n   <GrpSts>RJCT</GrpSts>\n   <StsRsnInf>"),
                "line 15, OrgnlGrpInfAndSts/GrpSts: stands too late in OrgnlGrpInfAndSts. Keep the "
                "order OrgnlMsgId,");
}

TEST_F(ReportCheck, AnElementThatIsThereTwiceIsNamed)
{
    ExpectFault(CheckWith("   <GrpSts>RJCT</GrpSts>\n",
                          "   <GrpSts>RJCT</GrpSts>\n   <GrpSts>RCVD</GrpSts>\n"),
                "line 15, OrgnlGrpInfAndSts/GrpSts: is there twice. Keep one of them.");
}

TEST_F(ReportCheck, AnElementOfAnotherMessageIsNamed)
{
    ExpectFault(CheckWith("<GrpSts>RJCT</GrpSts>", "<GrpSts>RJCT</GrpSts><PmtInf/>"),
                "line 14, OrgnlGrpInfAndSts/PmtInf: is not expected in OrgnlGrpInfAndSts.");
}

TEST_F(ReportCheck, TextsOutOfTheirFormAreNamedWithTheRemedy)
{
    ExpectFault(CheckWith("RJCT", "NOPE"),
                "OrgnlGrpInfAndSts/GrpSts: 'NOPE' is no status. Write one of ACTC, RCVD,");
    ExpectFault(CheckWith("AM02", "XX99"),
                "StsRsn/Cd: 'XX99' is no reason code. Write one of AC01");
    ExpectFault(CheckWith("1500.00", "1500.001"), "OrgnlCtrlSum: '1500.001' is no sum.");
    ExpectFault(CheckWith(">3<", ">three<"), "OrgnlNbOfTxs: 'three' is no count.");
    ExpectFault(CheckWith("RPT-1", std::string(36, 'x')),
                "GrpHdr/MsgId: has 36 characters. Give 1 to 35 characters.");
    ExpectFault(CheckWith("RPT-1", ""), "GrpHdr/MsgId: is empty. Give 1 to 35 characters.");
}

TEST_F(ReportCheck, LengthsCountCharactersAndNotBytes)
{
    std::string text;
    for (int count = 0; count < 105; ++count)
    {
        text += "é";
    }
    EXPECT_EQ(CheckWith("Total above the holder's limit: Hélène Garçon", text).status, 0);
    ExpectFault(CheckWith("Total above the holder's limit: Hélène Garçon", text + "é"),
                "AddtlStsRsnInf: has 106 characters. Give 1 to 105 characters.");
}

TEST_F(ReportCheck, TimesAreOfTheCalendar)
{
    const std::string time = "2026-03-29T14:05:09";
    for (const std::string good :
         {"2028-02-29T00:00:00", "2026-03-29T14:05:09.123", "2026-03-29T14:05:09Z",
          "2026-03-29T14:05:09+14:00", "2026-03-29T14:05:09.5-01:30"})
    {
        EXPECT_EQ(CheckWith(time, good).status, 0) << good;
    }
    for (const std::string bad :
         {"2026-02-29T00:00:00", "2026-03-29 14:05:09", "2026-03-29", "2026-03-29T24:00:00",
          "2026-03-29T14:05:09.", "2026-03-29T14:05:09+14:01", "2026-03-29T14:05:09+1:00",
          "2026-03-29T14:05:09+01:60", "2026-03-29T14:05:09ZZ", "2026-03-29T14:05"})
    {
        ExpectFault(CheckWith(time, bad), "GrpHdr/CreDtTm: '" + bad + "' is no time.");
    }
}

TEST_F(ReportCheck, AnotherNamespaceIsToldOnceWhereItBegins)
{
    ExpectFault(CheckWith("xsd:pain.002.001.02", "xsd:pain.002.001.03"),
                "line 2, Document: stands in the namespace "
                "'urn:iso:std:iso:20022:tech:xsd:pain.002.001.03'. Declare xmlns=");
    ExpectFault(CheckWith("<OrgnlMsgId>", "<OrgnlMsgId xmlns=\"urn:other\">"),
                "line 10, OrgnlGrpInfAndSts/OrgnlMsgId: stands in the namespace 'urn:other'.");
}

TEST_F(ReportCheck, AnotherRootIsNoReport)
{
    ExpectFault(CheckText("<Order/>"), "line 1, Order: is not the root of a status report.");
}

TEST_F(ReportCheck, ADocumentTypeIsRefused)
{
    ExpectFault(CheckText("<!DOCTYPE Document [<!ENTITY e \"x\">]>\n<Document/>"),
                "declares a document type");
}

TEST_F(ReportCheck, AttributesAndStrayTextsAreNamed)
{
    ExpectFault(CheckWith("<GrpSts>", "<GrpSts lang=\"en\">"),
                "OrgnlGrpInfAndSts/GrpSts: has the attribute 'lang'");
    ExpectFault(CheckWith("  <GrpHdr>\n", "  <GrpHdr>stray\n"),
                "line 4, GrpHdr: has text beside its elements.");
    ExpectFault(CheckWith("RPT-1", "<x/>RPT-1"), "GrpHdr/MsgId: holds elements");
}

TEST_F(ReportCheck, WhatThisSystemNeverWritesIsToldAsNotRead)
{
    const Answer answer = CheckWith("  </OrgnlGrpInfAndSts>\n",
                                    "  </OrgnlGrpInfAndSts>\n  <TxInfAndSts><X/></TxInfAndSts>\n");

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, HasSubstr("Not read  TxInfAndSts\n"));
}

TEST_F(ReportCheck, ControlCharactersOfTextsDoNotReachTheTerminal)
{
    const Answer answer = CheckWith("Hélène Garçon", "a&#x9b;b");

    EXPECT_THAT(answer.output, Not(HasSubstr("\xC2\x9B")));
}

TEST_F(ReportCheck, AFileThatIsNotThereIsRefused)
{
    const Answer answer = RunSigncheck({"report", "check", m_folder.Path("none.psr")});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("none.psr"));
}

class ReportsOfChecks : public SampleBankTest
{
};

TEST_F(ReportsOfChecks, AreValid)
{
    auto arguments = CheckOf("Hélène Garçon");
    arguments.insert(arguments.end(),
                     {"--order-id", "A1", "--psr-service", "STATUS", "--party", "QZBKFRPP",
                      "--message-name", "pain.001.001.03", "--message-id", "RPT-1", "--json"});
    const std::string path = RunSigncheck(arguments).Json()["reportFile"]["path"];

    const Answer answer = RunSigncheck({"report", "check", path});

    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_THAT(answer.output, HasSubstr("RJCT: rejected"));
}

} // namespace
} // namespace testing_support
