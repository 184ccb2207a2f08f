#include "signutils/signutils_c.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

// Amounts from the order file through the C interface, with the real engine.

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::TemporaryFolder;

namespace
{

class CAmounts : public testing::Test
{
protected:
    CAmounts()
    {
        EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_MULTITHREADED), SIGNUTILS_OK);
        EXPECT_EQ(SignUtilsCreate(nullptr, nullptr, &m_session), SIGNUTILS_OK);
        EXPECT_EQ(SignUtilsSetFormatInfo(m_session, "ISO20022", "pain.001", nullptr), SIGNUTILS_OK);
        m_amounts.size = sizeof m_amounts;
    }
    ~CAmounts() override
    {
        SignUtilsDestroy(m_session);
        SignUtilsComUninitialize();
    }

    // A file of two orders, 100.00 and 250.50 EUR.
    std::string CopyOfOrder() const
    {
        const std::string order = m_folder.Path("order.xml");
        std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / "pain001_v03.xml",
                                   order);
        return order;
    }

    TemporaryFolder m_folder;
    SignUtilsSession* m_session = nullptr;
    SignUtilsAmounts m_amounts = {};
};

TEST_F(CAmounts, AreWorkedOutFromTheFileWhichIsLeftAlone)
{
    const std::string order = CopyOfOrder();
    ASSERT_EQ(SignUtilsGetMaxAmountFile(m_session, order.c_str(), &m_amounts), SIGNUTILS_OK)
        << SignUtilsErrorText(m_session);
    EXPECT_DOUBLE_EQ(m_amounts.totalAmount, 350.50);
    EXPECT_DOUBLE_EQ(m_amounts.maxOrderAmount, 250.50);
    EXPECT_EQ(m_amounts.orderCount, 2);
    EXPECT_STREQ(m_amounts.currency, "EUR");
    EXPECT_STREQ(m_amounts.errors, "");
    EXPECT_THAT(engine_tests::Names(m_folder.Path()), ElementsAre("order.xml"));
}

TEST_F(CAmounts, ConversionAloneLeavesItsWorkFiles)
{
    const std::string order = CopyOfOrder();
    ASSERT_EQ(SignUtilsExecWorkFmt(m_session, order.c_str()), SIGNUTILS_OK);
    EXPECT_THAT(engine_tests::Names(m_folder.Path()), testing::Contains("order.xml.veu.bp"));
}

TEST_F(CAmounts, FileThatCannotBeConvertedSaysWhere)
{
    const std::string order = m_folder.Write("order.xml", "<Document>\n</Wrong>");
    EXPECT_EQ(SignUtilsGetMaxAmountFile(m_session, order.c_str(), &m_amounts), SIGNUTILS_FAILED);
    EXPECT_THAT(SignUtilsErrorText(m_session),
                AllOf(StartsWith("The order file could not be converted: "), HasSubstr("line 2")));
    EXPECT_EQ(m_amounts.totalAmount, 0.0);
}

TEST_F(CAmounts, ThreadWithoutComIsTold)
{
    SignUtilsComUninitialize();
    const std::string order = CopyOfOrder();
    EXPECT_EQ(SignUtilsExecWorkFmt(m_session, order.c_str()), SIGNUTILS_FAILED);
    EXPECT_THAT(SignUtilsErrorText(m_session), HasSubstr("Initialize CFFmtRun Error"));
    EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_MULTITHREADED), SIGNUTILS_OK);
}

} // namespace
