#include "psr/status_report.h"
#include "support/format_argument.h"
#include "support/messages.h"
#include "support/tsimplestringw.h"
#include "tests/psr/report_checker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::FindReportFaults;

psr::StatusReport CompleteRefusal()
{
    return {"BANKFRPP", "ORDER00001", "pain.001.001.03", "PSR-2026-03-29-0001",
            false,      "AM02",       "Total over it",   2,
            1500.0};
}

/// As it is handed on: in UTF-8.
std::string HandedOn(const psr::StatusReport& report)
{
    TSimpleString document;
    psr::WriteStatusReport(nullptr, report, document);
    document.EncodeUtf8();
    return document.SafeGetString();
}

TEST(ReportValidity, RefusalWithAllItsPartsIsValid)
{
    EXPECT_THAT(FindReportFaults(HandedOn(CompleteRefusal())), IsEmpty());
}

TEST(ReportValidity, RefusalWithoutTotalsIsValid)
{
    psr::StatusReport report = CompleteRefusal();
    report.nbOfTxs = 0;
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

TEST(ReportValidity, RefusalWithoutReasonsIsValid)
{
    psr::StatusReport report = CompleteRefusal();
    report.reasonCode = "";
    report.reasonInfo = "";
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

TEST(ReportValidity, ReceptionIsValid)
{
    psr::StatusReport report = CompleteRefusal();
    report.received = true;
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

TEST(ReportValidity, AccentsOfTheCodePageAreValidOnceEncoded)
{
    psr::StatusReport report = CompleteRefusal();
    report.reasonInfo = "DOUBLE SIGNATURE EXIG\xC9"
                        "E, 10 \x80";
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

TEST(ReportValidity, TextsFillTheirLengths)
{
    const std::string text35(35, 'M');
    const std::string text105(105, '\xE9');
    psr::StatusReport report = CompleteRefusal();
    report.initiatingParty = text35.c_str();
    report.orgnlMsgId = text35.c_str();
    report.orgnlMsgNmId = text35.c_str();
    report.msgId = text35.c_str();
    report.reasonInfo = text105.c_str();
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

TEST(ReportValidity, SumWithUpTo18DigitsIsValid)
{
    psr::StatusReport report = CompleteRefusal();
    report.ctrlSum = 999999999999999.0;
    EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty());
}

struct CatalogueReason
{
    unsigned int message;
    std::size_t holders; ///< that its text names
    std::size_t amounts;
};

/// Those of the catalogue's texts that become reason texts of refusals.
constexpr CatalogueReason kReasons[] = {
    {1800, 1, 1}, {1801, 1, 2}, {1802, 1, 2}, {1816, 0, 0}, {1820, 2, 2}, {1821, 2, 2},
};

std::vector<FormatArgument> ArgumentsOf(const CatalogueReason& reason)
{
    const FormatArgument holder[] = {L"Gar\u00E7on", L"H\u00E9l\u00E8ne",
                                     L"H\u00E9l\u00E8ne Gar\u00E7on"};
    const FormatArgument amount[] = {1500000.5, L"EUR"};
    std::vector<FormatArgument> arguments;
    for (std::size_t count = 0; count < reason.holders; ++count)
    {
        arguments.insert(arguments.end(), std::begin(holder), std::end(holder));
    }
    for (std::size_t count = 0; count < reason.amounts; ++count)
    {
        arguments.insert(arguments.end(), std::begin(amount), std::end(amount));
    }
    return arguments;
}

TEST(ReportValidity, ReasonsOfTheCatalogueWithUsualNamesAreValid)
{
    for (const support::Language language : {support::Language::English, support::Language::French})
    {
        for (const CatalogueReason& reason : kReasons)
        {
            const std::vector<FormatArgument> arguments = ArgumentsOf(reason);
            TSimpleString info;
            info.FromWide(
                support::MessageIn(language, reason.message, arguments.data(), arguments.size())
                    .c_str());
            psr::StatusReport report = CompleteRefusal();
            report.reasonInfo = info.SafeGetString();
            EXPECT_THAT(FindReportFaults(HandedOn(report)), IsEmpty())
                << reason.message << ": " << info.SafeGetString();
        }
    }
}

TEST(ReportValidity, CheckerFindsATextThatIsTooLong)
{
    const std::string text106(106, 'x');
    psr::StatusReport report = CompleteRefusal();
    report.reasonInfo = text106.c_str();
    EXPECT_THAT(FindReportFaults(HandedOn(report)),
                ElementsAre("AddtlStsRsnInf may not be \"" + text106 + "\""));
}

TEST(ReportValidity, CheckerFindsAnEmptyIdentifier)
{
    psr::StatusReport report = CompleteRefusal();
    report.msgId = "";
    EXPECT_THAT(FindReportFaults(HandedOn(report)), ElementsAre("MsgId may not be \"\""));
}

TEST(ReportValidity, CheckerFindsAnUnknownReasonCode)
{
    psr::StatusReport report = CompleteRefusal();
    report.reasonCode = "am02";
    EXPECT_THAT(FindReportFaults(HandedOn(report)), ElementsAre("Cd may not be \"am02\""));
}

TEST(ReportValidity, CheckerFindsAnElementOutOfPlace)
{
    std::string document = HandedOn(CompleteRefusal());
    const std::string status = "   <GrpSts>RJCT</GrpSts>\n";
    document.erase(document.find(status), status.size());
    document.insert(document.find("   <OrgnlMsgId>"), status);
    EXPECT_THAT(FindReportFaults(document),
                ElementsAre("OrgnlGrpInfAndSts lacks OrgnlMsgId",
                            "OrgnlGrpInfAndSts lacks OrgnlMsgNmId",
                            "OrgnlMsgId is out of place in OrgnlGrpInfAndSts"));
}

TEST(ReportValidity, CheckerFindsUnescapedText)
{
    psr::StatusReport report = CompleteRefusal();
    report.reasonInfo = "Smith & Sons";
    EXPECT_THAT(FindReportFaults(HandedOn(report)), ElementsAre("not well-formed"));
}

TEST(ReportValidity, CheckerFindsBytesThatAreNotInTheDeclaredEncoding)
{
    psr::StatusReport report = CompleteRefusal();
    report.reasonInfo = "EXIG\xC9"
                        "E";
    TSimpleString document;
    psr::WriteStatusReport(nullptr, report, document);
    EXPECT_THAT(FindReportFaults(document.SafeGetString()), ElementsAre("not well-formed"));
}

} // namespace
