// The lock beside an order file, as checks meet it.

#include "host/order_lock.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

class OrderLockOfCheck : public SampleBankTest
{
};

TEST_F(OrderLockOfCheck, KeepsAnotherHostFromJudgingTheOrder)
{
    const host::OrderLock lock(m_order, "signcheck watch");
    ASSERT_TRUE(lock.IsTaken());

    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.emplace_back("--json");
    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.Json()["outcome"], "not-run");
    EXPECT_THAT(answer.errors, HasSubstr("is in use by another host (signcheck watch, "
                                         "process "));
    EXPECT_THAT(answer.errors, HasSubstr("Wait until it is done"));
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(OrderLockOfCheck, IsGoneAfterTheCheck)
{
    EXPECT_EQ(RunSigncheck(CheckOf("Élodie Lefèvre")).status, 0);
    EXPECT_FALSE(std::filesystem::exists(host::OrderLockPath(m_order)));
}

TEST_F(OrderLockOfCheck, OfADeadHostHindersNobody)
{
    m_folder.Write("order.xml.veu.lock", "signcheck batch, process 4711 on elsewhere");

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    EXPECT_FALSE(std::filesystem::exists(host::OrderLockPath(m_order)));
}

TEST_F(OrderLockOfCheck, ThatCannotBeMadeIsToldAndTheCheckGoesOn)
{
    std::filesystem::create_directory(m_folder.Path("order.xml.veu.lock"));

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("order.xml.veu.lock' cannot be made"));
}

} // namespace
} // namespace testing_support
