#include "psr/status_report.h"

#include "support/trace.h"
#include "tests/signers/trace_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <regex>
#include <string>

namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr char kMoment[] = "2026-03-29T14:05:09";

psr::StatusReport Refusal()
{
    return {"BANKFRPP", "MSG-2026-0001", "pain.001.001.03",      "PSR-1",
            false,      "AM02",          "Total over the limit", 3,
            1234.5};
}

std::string Written(const psr::StatusReport& report, void* trace = nullptr)
{
    TSimpleString document("what was there before");
    psr::WriteStatusReport(trace, report, kMoment, document);
    return document.SafeGetString();
}

TEST(StatusReport, RefusalIsThisDocumentByteForByte)
{
    EXPECT_EQ(Written(Refusal()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.002.001.02\" "
              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
              " <pain.002.001.02>\n"
              "  <GrpHdr>\n"
              "   <MsgId>PSR-1</MsgId>\n"
              "   <CreDtTm>2026-03-29T14:05:09</CreDtTm>\n"
              "   <InitgPty><Id><OrgId><BkPtyId>BANKFRPP</BkPtyId></OrgId></Id></InitgPty>\n"
              "  </GrpHdr>\n"
              "  <OrgnlGrpInfAndSts>\n"
              "   <OrgnlMsgId>MSG-2026-0001</OrgnlMsgId>\n"
              "   <OrgnlMsgNmId>pain.001.001.03</OrgnlMsgNmId>\n"
              "    <OrgnlNbOfTxs>3</OrgnlNbOfTxs>\n"
              "    <OrgnlCtrlSum>1234.50</OrgnlCtrlSum>\n"
              "   <GrpSts>RJCT</GrpSts>\n"
              "   <StsRsnInf>\n"
              "      <StsRsn>\n"
              "         <Cd>AM02</Cd>\n"
              "      </StsRsn>\n"
              "      <AddtlStsRsnInf>Total over the limit</AddtlStsRsnInf>\n"
              "   </StsRsnInf>\n"
              "  </OrgnlGrpInfAndSts>\n"
              " </pain.002.001.02>\n"
              "</Document>");
}

TEST(StatusReport, ReceptionHasNoReasonsWhateverIsGiven)
{
    psr::StatusReport report = Refusal();
    report.received = true;
    report.nbOfTxs = 0;

    EXPECT_EQ(Written(report),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.002.001.02\" "
              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
              " <pain.002.001.02>\n"
              "  <GrpHdr>\n"
              "   <MsgId>PSR-1</MsgId>\n"
              "   <CreDtTm>2026-03-29T14:05:09</CreDtTm>\n"
              "   <InitgPty><Id><OrgId><BkPtyId>BANKFRPP</BkPtyId></OrgId></Id></InitgPty>\n"
              "  </GrpHdr>\n"
              "  <OrgnlGrpInfAndSts>\n"
              "   <OrgnlMsgId>MSG-2026-0001</OrgnlMsgId>\n"
              "   <OrgnlMsgNmId>pain.001.001.03</OrgnlMsgNmId>\n"
              "   <GrpSts>RCVD</GrpSts>\n"
              "  </OrgnlGrpInfAndSts>\n"
              " </pain.002.001.02>\n"
              "</Document>");
}

struct ReasonCase
{
    const char* name;
    const char* code;
    const char* info;
    const char* block;
};

class StatusReportReasons : public testing::TestWithParam<ReasonCase>
{
};

TEST_P(StatusReportReasons, BlockHoldsWhatIsGiven)
{
    psr::StatusReport report = Refusal();
    report.reasonCode = GetParam().code;
    report.reasonInfo = GetParam().info;

    const std::string expected =
        std::string("   <GrpSts>RJCT</GrpSts>\n") + GetParam().block + "  </OrgnlGrpInfAndSts>\n";
    EXPECT_THAT(Written(report), HasSubstr(expected));
}

constexpr char kEmptyBlock[] = "   <StsRsnInf>\n"
                               "   </StsRsnInf>\n";
constexpr char kCodeOnly[] = "   <StsRsnInf>\n"
                             "      <StsRsn>\n"
                             "         <Cd>NARR</Cd>\n"
                             "      </StsRsn>\n"
                             "   </StsRsnInf>\n";
constexpr char kTextOnly[] = "   <StsRsnInf>\n"
                             "      <AddtlStsRsnInf>why</AddtlStsRsnInf>\n"
                             "   </StsRsnInf>\n";

INSTANTIATE_TEST_SUITE_P(
    Reasons, StatusReportReasons,
    testing::Values(ReasonCase{"EmptyTextsLeaveAnEmptyBlock", "", "", kEmptyBlock},
                    ReasonCase{"NullTextsLeaveAnEmptyBlock", nullptr, nullptr, kEmptyBlock},
                    ReasonCase{"CodeAlone", "NARR", "", kCodeOnly},
                    ReasonCase{"CodeAndNullText", "NARR", nullptr, kCodeOnly},
                    ReasonCase{"TextAlone", "", "why", kTextOnly},
                    ReasonCase{"NullCodeAndText", nullptr, "why", kTextOnly}),
    [](const auto& run) { return run.param.name; });

struct TotalsCase
{
    const char* name;
    int nbOfTxs;
    double ctrlSum;
    const char* lines; ///< between OrgnlMsgNmId and GrpSts
};

class StatusReportTotals : public testing::TestWithParam<TotalsCase>
{
};

TEST_P(StatusReportTotals, StandBothOrNeither)
{
    psr::StatusReport report = Refusal();
    report.nbOfTxs = GetParam().nbOfTxs;
    report.ctrlSum = GetParam().ctrlSum;

    EXPECT_THAT(Written(report),
                HasSubstr(std::string("</OrgnlMsgNmId>\n") + GetParam().lines + "   <GrpSts>"));
}

INSTANTIATE_TEST_SUITE_P(
    Totals, StatusReportTotals,
    testing::Values(
        TotalsCase{"NoCountDropsBoth", 0, 1234.5, ""}, TotalsCase{"NoSumDropsBoth", 3, -1.0, ""},
        TotalsCase{"NeitherDropsBoth", 0, -1.0, ""},
        TotalsCase{
            "BothStand", 3, 1234.5,
            "    <OrgnlNbOfTxs>3</OrgnlNbOfTxs>\n    <OrgnlCtrlSum>1234.50</OrgnlCtrlSum>\n"},
        TotalsCase{"SumOfZeroIsKnown", 1, 0.0,
                   "    <OrgnlNbOfTxs>1</OrgnlNbOfTxs>\n    <OrgnlCtrlSum>0.00</OrgnlCtrlSum>\n"},
        TotalsCase{"OtherNegativeSumsAreKnown", 1, -2.0,
                   "    <OrgnlNbOfTxs>1</OrgnlNbOfTxs>\n    <OrgnlCtrlSum>-2.00</OrgnlCtrlSum>\n"},
        TotalsCase{"NegativeCountIsShown", -1, 5.0,
                   "    <OrgnlNbOfTxs>-1</OrgnlNbOfTxs>\n    <OrgnlCtrlSum>5.00</OrgnlCtrlSum>\n"},
        TotalsCase{"LargestCount", std::numeric_limits<int>::max(), 1.0,
                   "    <OrgnlNbOfTxs>2147483647</OrgnlNbOfTxs>\n"
                   "    <OrgnlCtrlSum>1.00</OrgnlCtrlSum>\n"},
        TotalsCase{"NoGroupingInLargeSums", 2, 12345678901234.56,
                   "    <OrgnlNbOfTxs>2</OrgnlNbOfTxs>\n"
                   "    <OrgnlCtrlSum>12345678901234.56</OrgnlCtrlSum>\n"},
        TotalsCase{"ThirdDecimalIsRounded", 2, 12.346,
                   "    <OrgnlNbOfTxs>2</OrgnlNbOfTxs>\n"
                   "    <OrgnlCtrlSum>12.35</OrgnlCtrlSum>\n"}),
    [](const auto& run) { return run.param.name; });

TEST(StatusReport, TextsAreInsertedUnescaped)
{
    psr::StatusReport report = Refusal();
    report.reasonInfo = "Smith & Sons < \"limit\" >";

    EXPECT_THAT(Written(report),
                HasSubstr("      <AddtlStsRsnInf>Smith & Sons < \"limit\" ></AddtlStsRsnInf>\n"));
}

TEST(StatusReport, TextsKeepTheirEncoding)
{
    psr::StatusReport report = Refusal();
    report.reasonInfo = "EXIG\xC9"
                        "E";

    EXPECT_THAT(Written(report), HasSubstr("<AddtlStsRsnInf>EXIG\xC9"
                                           "E</AddtlStsRsnInf>"));
}

TEST(StatusReport, NullIdentifiersAreEmpty)
{
    const psr::StatusReport report = {nullptr, nullptr, nullptr, nullptr, true,
                                      nullptr, nullptr, 0,       -1.0};
    const std::string document = Written(report);

    EXPECT_THAT(document, HasSubstr("   <MsgId></MsgId>\n"));
    EXPECT_THAT(document, HasSubstr("<BkPtyId></BkPtyId>"));
    EXPECT_THAT(document, HasSubstr("   <OrgnlMsgId></OrgnlMsgId>\n"));
    EXPECT_THAT(document, HasSubstr("   <OrgnlMsgNmId></OrgnlMsgNmId>\n"));
}

TEST(StatusReport, EndsWithoutALineFeed)
{
    const std::string document = Written(Refusal());
    EXPECT_EQ(document.substr(document.size() - 12), "\n</Document>");
}

TEST(StatusReport, PreviousContentIsReplaced)
{
    EXPECT_THAT(Written(Refusal()), Not(HasSubstr("what was there before")));
}

TEST(StatusReport, MayTakeATextFromTheDocumentItReplaces)
{
    TSimpleString document("PSR-7");
    psr::StatusReport report = Refusal();
    report.msgId = document.SafeGetString();

    psr::WriteStatusReport(nullptr, report, kMoment, document);

    EXPECT_THAT(document.SafeGetString(), HasSubstr("<MsgId>PSR-7</MsgId>"));
}

TEST(StatusReport, CreationTimeIsADateAndTimeThatReceiversRead)
{
    TSimpleString document;
    psr::WriteStatusReport(nullptr, Refusal(), document);

    EXPECT_TRUE(std::regex_search(
        document.SafeGetString(),
        std::regex("<CreDtTm>20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}</CreDtTm>")))
        << document.SafeGetString();
}

TEST(StatusReport, TraceTellsWhatGoesInUnderLabelsOf34Characters)
{
    testing_support::TraceFile trace;
    Written(Refusal(), trace.Handle());

    EXPECT_EQ(trace.Lines(), "[GENERATE PSR]\n"
                             "InitiatingParty                   |BANKFRPP\n"
                             "OriginalMessageIdentification     |MSG-2026-0001\n"
                             "OriginalMessageNameIdentification |pain.001.001.03\n"
                             "MessageIdentification             |PSR-1\n"
                             "OriginalNumberOfTransactions      |3\n"
                             "OriginalControlSum                |1234.50\n"
                             "Reject code                       |AM02\n"
                             "Reject information                |Total over the limit\n");
}

TEST(StatusReport, TraceShowsUnknownTotalsEmpty)
{
    testing_support::TraceFile trace;
    psr::StatusReport report = Refusal();
    report.ctrlSum = -1.0;
    report.reasonCode = nullptr;
    Written(report, trace.Handle());

    EXPECT_TRUE(trace.Has("OriginalNumberOfTransactions      |"));
    EXPECT_TRUE(trace.Has("OriginalControlSum                |"));
    EXPECT_TRUE(trace.Has("Reject code                       |"));
}

TEST(StatusReport, UnusableTraceHandlesAreIgnored)
{
    void* const allOnes = reinterpret_cast<void*>(UINTPTR_MAX);
    EXPECT_EQ(Written(Refusal(), allOnes), Written(Refusal(), nullptr));
}

} // namespace
