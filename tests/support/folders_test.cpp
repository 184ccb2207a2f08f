#include "support/folders.h"

#include "port/environment.h"
#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

TEST(Folders, EnvironmentVariablesChooseThem)
{
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", "/somewhere/spool");
    const ScopedEnvironment handOff("SIGNUTILS_HANDOFF", "/somewhere/handoff");
    const ScopedEnvironment progress("SIGNCHECK_PROGRESS", "/somewhere/progress");
    EXPECT_EQ(support::SpoolFolder(), "/somewhere/spool");
    EXPECT_EQ(support::ProgressFolder(), "/somewhere/progress");
    EXPECT_EQ(support::HandOffFolder(), "/somewhere/handoff");
}

TEST(Folders, WithoutVariablesTheyLieBelowTheStateFolder)
{
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", nullptr);
    const ScopedEnvironment handOff("SIGNUTILS_HANDOFF", "");
    const ScopedEnvironment progress("SIGNCHECK_PROGRESS", nullptr);
    EXPECT_EQ(support::SpoolFolder(), port::JoinPath(port::StateFolder(), "spool"));
    EXPECT_EQ(support::ProgressFolder(), port::JoinPath(port::StateFolder(), "progress"));
    EXPECT_EQ(support::HandOffFolder(), port::JoinPath(port::StateFolder(), "handoff"));
}

TEST(DoLoadPath, TheVariableWinsAndGetsItsSeparator)
{
    const TemporaryFolder folder;
    const ScopedEnvironment chosen("SIGNUTILS_CONFIG", folder.Path().c_str());
    EXPECT_EQ(DoLoadPath(), folder.Path() + port::PathSeparator());
}

TEST(DoLoadPath, ASeparatorThatIsThereIsNotDoubled)
{
    const TemporaryFolder folder;
    const ScopedEnvironment chosen("SIGNUTILS_CONFIG", (folder.Path() + "/").c_str());
    EXPECT_EQ(DoLoadPath(), folder.Path() + "/");
}

TEST(DoLoadPath, WithoutTheVariableTheMachinesFolderOrTheModulesIsGiven)
{
    const ScopedEnvironment chosen("SIGNUTILS_CONFIG", nullptr);
    const std::string machine = port::SystemConfigurationFolder();
    const bool holdsLayouts =
        !machine.empty() && port::FileExists(port::JoinPath(machine, "CtlVEU.INI").c_str());
    EXPECT_EQ(DoLoadPath(),
              (holdsLayouts ? machine : port::ModuleFolder()) + port::PathSeparator());
}

} // namespace
