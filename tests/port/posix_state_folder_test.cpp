#include "port/environment.h"
#include "port/posix/state_folder.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

using port::ChooseStateFolder;
using testing_support::ScopedEnvironment;

TEST(PosixStateFolder, MachineFolderComesFirstWhenItIsWritable)
{
    EXPECT_EQ(ChooseStateFolder("/var/lib/signutils", true, "/state", "/home/u"),
              "/var/lib/signutils");
}

TEST(PosixStateFolder, StateHomeComesNext)
{
    EXPECT_EQ(ChooseStateFolder("/var/lib/signutils", false, "/state", "/home/u"),
              "/state/signutils");
}

TEST(PosixStateFolder, HomeComesLast)
{
    EXPECT_EQ(ChooseStateFolder("/var/lib/signutils", false, "", "/home/u"),
              "/home/u/.local/state/signutils");
}

TEST(PosixStateFolder, StateHomeWithoutAFullPathIsIgnored)
{
    EXPECT_EQ(ChooseStateFolder("/var/lib/signutils", false, "state", "/home/u"),
              "/home/u/.local/state/signutils");
}

TEST(PosixStateFolder, EnvironmentIsReadAtEachCall)
{
    const ScopedEnvironment home("HOME", "/home/u");
    const ScopedEnvironment state("XDG_STATE_HOME", "/st\xC3\xA9");
    const std::string folder = port::StateFolder();
    EXPECT_TRUE(folder == "/st\xE9/signutils" || folder == "/var/lib/signutils") << folder;
}

TEST(PosixStateFolder, HomeOfTheUserDatabaseServesWithoutAnEnvironment)
{
    const ScopedEnvironment home("HOME", nullptr);
    const ScopedEnvironment state("XDG_STATE_HOME", nullptr);
    EXPECT_EQ(port::StateFolder().front(), '/');
}

TEST(PosixStateFolder, ConfigurationOfTheUserIsBelowTheHomeFolder)
{
    const ScopedEnvironment home("HOME", "/home/u");
    {
        const ScopedEnvironment configuration("XDG_CONFIG_HOME", nullptr);
        EXPECT_EQ(port::UserConfigurationFolder(), "/home/u/.config");
    }
    {
        const ScopedEnvironment configuration("XDG_CONFIG_HOME", "/conf\xC3\xA9");
        EXPECT_EQ(port::UserConfigurationFolder(), "/conf\xE9");
    }
    const ScopedEnvironment configuration("XDG_CONFIG_HOME", "without/full/path");
    EXPECT_EQ(port::UserConfigurationFolder(), "/home/u/.config");
}

TEST(PosixStateFolder, ConfigurationOfTheMachineIsInEtc)
{
    EXPECT_EQ(port::SystemConfigurationFolder(), "/etc/signutils");
}

TEST(PosixEnvironment, ValuesInUtf8BecomeWindows1252)
{
    const ScopedEnvironment variable("SIGNUTILS_PORT_TEST", "\xE2\x82\xAC\xC3\xA9 \xC5\x82 \xFF");
    EXPECT_EQ(port::Environment("SIGNUTILS_PORT_TEST"), "\x80\xE9 ? ?");
}

TEST(PosixEnvironment, MalformedBytesBecomeAQuestionMarkEach)
{
    // Overlong, lone continuation, cut off, beyond three bytes.
    const ScopedEnvironment variable("SIGNUTILS_PORT_TEST",
                                     "\xC0\xAF|\x80|\xE2\x82|\xF0\x9F\x98\x80|\xE0\x82\xA9|\xC3");
    EXPECT_EQ(port::Environment("SIGNUTILS_PORT_TEST"), "\?\?|?|\?\?|\?\?\?\?|\?\?\?|?");
}

} // namespace
