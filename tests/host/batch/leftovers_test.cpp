#include "host/batch/leftovers.h"

#include "host/order_lock.h"
#include "host/refusal.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace batch
{
namespace
{

using std::chrono::hours;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

namespace fs = std::filesystem;

class LeftoversOfAKilledRun : public testing::Test
{
protected:
    LeftoversOfAKilledRun()
    {
        Write("A.xml.veu.cp", hours(3));
        Write("A.xml.veu.bp.0123456789abcdef.part", hours(3));
        Write("B.xml.veu", hours(1));
    }

    void Write(const std::string& name, seconds age)
    {
        const std::string path = m_folder.Write(name, "orders");
        fs::last_write_time(path, fs::file_time_type::clock::now() - age);
        m_names.push_back(name);
    }

    bool IsThere(const std::string& name) const { return fs::exists(m_folder.Path(name)); }

    TemporaryFolder m_folder;
    std::vector<std::string> m_names;
};

TEST_F(LeftoversOfAKilledRun, StayWithoutAnAge)
{
    const Leftovers leftovers = TendLeftovers(m_folder.Path(), m_names, std::nullopt);

    EXPECT_EQ(leftovers.removed, 0U);
    EXPECT_EQ(leftovers.names.size(), 3U);
    EXPECT_THAT(LeftoverWarning(m_folder.Path(), leftovers),
                HasSubstr("They hold orders in plain text"));
}

TEST_F(LeftoversOfAKilledRun, GoWhenTheyAreOlderThanTheAge)
{
    const Leftovers leftovers = TendLeftovers(m_folder.Path(), m_names, hours(2));

    EXPECT_EQ(leftovers.removed, 2U);
    EXPECT_THAT(leftovers.names, ElementsAre("B.xml.veu"));
    EXPECT_FALSE(IsThere("A.xml.veu.cp"));
    EXPECT_FALSE(IsThere("A.xml.veu.bp.0123456789abcdef.part"));
    EXPECT_TRUE(IsThere("B.xml.veu"));
}

TEST_F(LeftoversOfAKilledRun, AreNoneWhileTheirOrderIsJudged)
{
    const host::OrderLock lock(m_folder.Path("A.xml"), "test");

    const Leftovers leftovers = TendLeftovers(m_folder.Path(), m_names, hours(2));

    EXPECT_EQ(leftovers.removed, 0U);
    EXPECT_THAT(leftovers.names, ElementsAre("B.xml.veu"));
    EXPECT_TRUE(IsThere("A.xml.veu.cp"));
}

TEST_F(LeftoversOfAKilledRun, OfALockAreTakenOver)
{
    Write("A.xml.veu.lock", hours(3));

    TendLeftovers(m_folder.Path(), {"A.xml.veu.lock"}, std::nullopt);

    EXPECT_FALSE(IsThere("A.xml.veu.lock"));
    EXPECT_THAT(TendLeftovers(m_folder.Path(), {}, std::nullopt).names, IsEmpty());
}

TEST(AgeOfLeftovers, IsANumberWithItsUnit)
{
    const auto age = [](const char* text)
    {
        host::OptionValues values;
        values.AddUnlessThere("remove-leftovers", {text, "option --remove-leftovers"});
        return RemovalAge(values);
    };
    EXPECT_EQ(age("90s"), seconds(90));
    EXPECT_EQ(age("30m"), seconds(1800));
    EXPECT_EQ(age("12h"), hours(12));
    EXPECT_EQ(age("2d"), hours(48));
    EXPECT_FALSE(RemovalAge(host::OptionValues()));
    for (const char* const wrong : {"", "d", "2", "2w", "-1d", "1 d", "9999999d"})
    {
        EXPECT_THROW(age(wrong), host::UsageRefusal) << wrong;
    }
}

} // namespace
} // namespace batch
