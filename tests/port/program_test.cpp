#include "port/program.h"

#include "port/class_advice.h"
#include "port/kernel.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing_support::ScopedEnvironment;

TEST(RunningProcess, IsThisOne)
{
    EXPECT_TRUE(port::IsProcessRunning(GetCurrentProcessId()));
}

TEST(RunningProcess, IsNoneOfANumberThatNoProcessHas)
{
    // Processes are numbered from below on every system.
    for (const std::uint32_t process : {0U, 4194304U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        EXPECT_FALSE(port::IsProcessRunning(process)) << process;
    }
}

TEST(EnvironmentNames, HaveEveryVariableOnceWithoutItsValue)
{
    const ScopedEnvironment variable("SIGNUTILS_PORT_TEST", "a=b");
    const ScopedEnvironment other("SIGNUTILS_PORT_TEST_2", nullptr);

    const auto names = port::Utf8EnvironmentNames();

    EXPECT_EQ(std::count(names.begin(), names.end(), "SIGNUTILS_PORT_TEST"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "SIGNUTILS_PORT_TEST_2"), 0);
    for (const std::string& name : names)
    {
        EXPECT_EQ(name.find('='), std::string::npos) << name;
        EXPECT_NE(name, "");
    }
}

// Where the system tells Path from PATH each keeps its letters.
TEST(EnvironmentNames, AreWrittenAsTheSystemComparesThem)
{
    const ScopedEnvironment variable("SIGNUTILS_Port_Test", "x");
    const bool isOneName = !port::Utf8Environment("SIGNUTILS_PORT_TEST").empty();

    const auto names = port::Utf8EnvironmentNames();

    EXPECT_EQ(std::count(names.begin(), names.end(),
                         isOneName ? "SIGNUTILS_PORT_TEST" : "SIGNUTILS_Port_Test"),
              1);
}

TEST(ClassRegistry, NamesNoModuleOfAClassThatNobodyRegistered)
{
    constexpr CLSID kNobodys = {0x0BADCAFE, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
    EXPECT_EQ(port::ModuleNamedForClass(kNobodys), "");
}

} // namespace
