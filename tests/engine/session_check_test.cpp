#include "port/com.h"
#include "signutils/signutils.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/engine/work_files.h"
#include "tests/testing/bank.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

// Whole checks whose amounts come from the order file, with the real engine.

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::Bank;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;
using testing_support::TestDatabase;

namespace
{

class FileCheck : public testing::Test
{
protected:
    FileCheck() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~FileCheck() override { CoUninitialize(); }

    // Checks a file of two orders, 100.00 and 250.50 EUR, against a limit.
    unsigned long Check(SignUtils& session, const Contract& contract, const std::string& order)
    {
        Bank(m_database)
            .With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
            .With(contract);
        session.SetConnexionString(m_database.ConnexionString().c_str());
        session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, "");
        session.SetMessageInfo("BANKFRPP", "ORDER0001", "pain.001.001.03", "MSG-1");
        session.SetFormatInfo("ISO20022", "pain.001", "");
        return session.CheckSignRules(order.c_str(), L"Ana Ruiz");
    }

    std::string CopyOfOrder() const
    {
        const std::string order = m_folder.Path("order.xml");
        std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / "pain001_v03.xml",
                                   order);
        return order;
    }

    TemporaryFolder m_folder;
    TemporaryFolder m_state;
    ScopedEnvironment m_spool{"SIGNUTILS_SPOOL", m_state.Path("spool").c_str()};
    ScopedEnvironment m_handOff{"SIGNUTILS_HANDOFF", m_state.Path("handoff").c_str()};
    TestDatabase m_database;
};

struct LimitCase
{
    const char* name;
    const wchar_t* limit;
    int level; // 0 compares the total, 1 the largest order
    unsigned long verdict;
};

void PrintTo(const LimitCase& limitCase, std::ostream* stream)
{
    *stream << limitCase.name;
}

const LimitCase kLimitCases[] = {
    {"TotalEqualToTheLimitPasses", L"350.50", 0, 1},
    {"TotalOneCentAboveIsRefused", L"350.49", 0, 2},
    {"LargestOrderEqualToTheLimitPasses", L"250.50", 1, 1},
    {"LargestOrderOneCentAboveIsRefused", L"250.49", 1, 2},
};

class FileLimit : public FileCheck, public testing::WithParamInterface<LimitCase>
{
};

TEST_P(FileLimit, IsComparedWithTheAmountsOfTheFile)
{
    SignUtils session(nullptr, nullptr);
    const std::string order = CopyOfOrder();
    const auto contract = Contract(L"C1").AloneBy(L"H1");
    const unsigned long verdict =
        Check(session,
              GetParam().level == 0 ? Contract(contract).UpTo(GetParam().limit)
                                    : Contract(contract).OrdersUpTo(GetParam().limit),
              order);
    EXPECT_EQ(verdict, GetParam().verdict);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_TRUE(outcome.amountsKnown);
    EXPECT_DOUBLE_EQ(outcome.totalAmount, 350.50);
    EXPECT_DOUBLE_EQ(outcome.maxOrderAmount, 250.50);
    EXPECT_EQ(outcome.orderCount, 2);
    EXPECT_EQ(outcome.currency, "EUR");
    EXPECT_THAT(engine_tests::Names(m_folder.Path()), ElementsAre("order.xml"));
}

INSTANTIATE_TEST_SUITE_P(Limits, FileLimit, testing::ValuesIn(kLimitCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FileCheck, RulesStillRunWhenTheFileCannotBeConverted)
{
    SignUtils session(nullptr, nullptr);
    const std::string order = m_folder.Write("order.xml", "<Document>\n</Wrong>");
    EXPECT_EQ(Check(session, Contract(L"C1").AloneBy(L"H1").UpTo(L"350.50"), order), 1U);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_FALSE(outcome.amountsKnown);
    EXPECT_EQ(outcome.totalAmount, 0.0);
    EXPECT_THAT(std::string(outcome.amountsProblem.SafeGetString()), HasSubstr("line 2"));
}

// The engine's work files are gone before they are read, as when two checks of one file collide.
TEST_F(FileCheck, AmountsAreUnknownWhenTheWorkFilesAreGone)
{
    const amounts_tests::ScriptedEngine engine({});
    SignUtils session(nullptr, nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Check(session, Contract(L"C1").AloneBy(L"H1").UpTo(L"350.50"), CopyOfOrder()), 1U);
    testing::internal::GetCapturedStderr();
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_FALSE(outcome.amountsKnown);
    EXPECT_EQ(outcome.totalAmount, 0.0);
    EXPECT_EQ(outcome.amountsProblem, "The work files of the conversion could not be read");
}

} // namespace
