#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <string>

using namespace testing_support;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace
{

class CReports : public SessionTest
{
protected:
    std::string Write(std::int32_t received, std::int32_t count, double sum)
    {
        const char* report = nullptr;
        EXPECT_EQ(SignUtilsGeneratePSR(m_session, "BÂNQUE", "ORDER\u20AC", "pain.001.001.03",
                                       "MSG-1", received, "AM02", "Refusé", count, sum, &report),
                  SIGNUTILS_OK);
        return report;
    }

    SignUtilsStatus HandOn(const char* report, const char* service, const char* target)
    {
        m_handOn = {};
        m_handOn.size = sizeof m_handOn;
        return SignUtilsAddPaymentStatusReport(m_session, report, "psr", service, "PARTNER1",
                                               target, &m_handOn);
    }

    CSession m_session;
    SignUtilsHandOff m_handOn = {};
};

TEST_F(CReports, RejectionIsWrittenInTheEncodingThatItDeclares)
{
    const std::string report = Write(0, 3, 12.5);
    EXPECT_THAT(report, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
    EXPECT_THAT(report, AllOf(HasSubstr("<BkPtyId>BÂNQUE</BkPtyId>"),
                              HasSubstr("<OrgnlMsgId>ORDER\u20AC</OrgnlMsgId>"),
                              HasSubstr("<OrgnlNbOfTxs>3</OrgnlNbOfTxs>"),
                              HasSubstr("<OrgnlCtrlSum>12.50</OrgnlCtrlSum>"),
                              HasSubstr("<GrpSts>RJCT</GrpSts>"), HasSubstr("<Cd>AM02</Cd>"),
                              HasSubstr("<AddtlStsRsnInf>Refusé</AddtlStsRsnInf>")));
}

TEST_F(CReports, ReceiptWithoutTotalsHasNeitherTotalsNorReasons)
{
    const std::string report = Write(1, 0, -1.0);
    EXPECT_THAT(report, HasSubstr("<GrpSts>RCVD</GrpSts>"));
    EXPECT_EQ(report.find("OrgnlNbOfTxs"), std::string::npos);
    EXPECT_EQ(report.find("AM02"), std::string::npos);
}

TEST_F(CReports, ReportJustWrittenIsHandedOnByteForByte)
{
    const char* report = nullptr;
    ASSERT_EQ(SignUtilsGeneratePSR(m_session, "BANK", "É", "pain.001.001.03", "MSG-1", 0, "", "", 0,
                                   -1.0, &report),
              SIGNUTILS_OK);
    const std::string copy = report;
    ASSERT_EQ(HandOn(report, "STATUS", nullptr), SIGNUTILS_OK) << m_session.Error();
    EXPECT_EQ(m_handOn.result, 0U);
    EXPECT_EQ(m_handOn.fileId, 1U);
    EXPECT_EQ(m_handOn.errorCode, 0U);
    EXPECT_EQ(OnlyReport(), copy);
}

TEST_F(CReports, ReportGoesToTheTargetThatIsGivenWhoseNameIsUtf8)
{
    const std::string store = m_folder.Path("st\u00F6re");
    ASSERT_EQ(HandOn("<a/>", "STATUS", store.c_str()), SIGNUTILS_OK) << m_session.Error();
    const auto filed = std::filesystem::path(std::u8string(store.begin(), store.end())) / "STATUS" /
                       "PARTNER1" / "1.psr";
    EXPECT_TRUE(std::filesystem::exists(filed));
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
}

TEST_F(CReports, ServiceThatWouldLeaveTheStoreIsToldByCodeAndText)
{
    EXPECT_EQ(HandOn("<a/>", "..", nullptr), SIGNUTILS_FAILED);
    EXPECT_EQ(m_handOn.result, 0x00C90004U);
    EXPECT_EQ(m_handOn.fileId, 0U);
    EXPECT_EQ(m_handOn.errorCode, 2U);
    EXPECT_THAT(m_session.Error(), AllOf(StartsWith("The report was not handed on: "),
                                         HasSubstr("service"), HasSubstr("..")));
}

TEST_F(CReports, ReportThatCannotBeSavedIsToldInWords)
{
    m_handOn.size = sizeof m_handOn;
    EXPECT_EQ(SignUtilsAddPaymentStatusReport(m_session, "<a/>", "p/sr", "STATUS", "PARTNER1",
                                              nullptr, &m_handOn),
              SIGNUTILS_FAILED);
    EXPECT_EQ(m_handOn.result, 0x00C90004U);
    EXPECT_EQ(m_handOn.errorCode, 0U);
    EXPECT_EQ(m_session.Error(),
              "The report was not handed on: it cannot be written to a temporary file. Check the "
              "extension and the folder for temporary files.");
}

TEST_F(CReports, StoreThatIsNoFolderIsToldInWords)
{
    const std::string file = m_folder.Write("occupied", "");
    EXPECT_EQ(HandOn("<a/>", "STATUS", file.c_str()), SIGNUTILS_FAILED);
    EXPECT_THAT(m_session.Error(), HasSubstr("occupied"));
}

TEST_F(CReports, ConversionWithoutFormatsSaysWhatIsMissing)
{
    EXPECT_EQ(SignUtilsExecWorkFmt(m_session, "order.xml"), SIGNUTILS_FAILED);
    EXPECT_THAT(m_session.Error(), StartsWith("The order file could not be converted: "));
    SignUtilsAmounts amounts = {};
    amounts.size = sizeof amounts;
    amounts.totalAmount = 5.0;
    EXPECT_EQ(SignUtilsGetMaxAmountFile(m_session, "order.xml", &amounts), SIGNUTILS_FAILED);
    EXPECT_EQ(amounts.size, sizeof amounts);
    EXPECT_EQ(amounts.totalAmount, 0.0);
    EXPECT_STREQ(amounts.errors, "");
}

} // namespace
