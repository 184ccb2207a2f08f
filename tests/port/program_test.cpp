#include "port/program.h"

#include "port/class_advice.h"
#include "port/kernel.h"

#include <gtest/gtest.h>

namespace
{

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

TEST(ClassRegistry, NamesNoModuleOfAClassThatNobodyRegistered)
{
    constexpr CLSID kNobodys = {0x0BADCAFE, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
    EXPECT_EQ(port::ModuleNamedForClass(kNobodys), "");
}

} // namespace
