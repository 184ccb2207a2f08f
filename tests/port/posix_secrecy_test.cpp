// Rights of files and folders, which POSIX alone keeps as modes.

#include "port/files.h"
#include "port/secrecy.h"
#include "tests/testing/file_mode.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;
using port::File;
using port::OpenMode;
using testing_support::ModeOf;
using testing_support::ScopedMask;
using testing_support::TemporaryFolder;

TEST(PosixRights, NewFilesAndFoldersAreTheirOwnersWhateverTheMaskAllows)
{
    const TemporaryFolder folder;
    const ScopedMask mask(0);
    File made;
    ASSERT_TRUE(made.Open(folder.Path("made").c_str(), OpenMode::CreateNew));
    File appended;
    ASSERT_TRUE(appended.Open(folder.Path("appended").c_str(), OpenMode::Append));
    ASSERT_TRUE(port::CreatePrivateFolder(folder.Path("a/b").c_str()));

    EXPECT_EQ(ModeOf(folder.Path("made")), 0600U);
    EXPECT_EQ(ModeOf(folder.Path("appended")), 0600U);
    EXPECT_EQ(ModeOf(folder.Path("a")), 0700U);
    EXPECT_EQ(ModeOf(folder.Path("a/b")), 0700U);
}

TEST(PosixRights, FoldersThatAreThereKeepWhatWasGivenToAGroupAndToReaders)
{
    const TemporaryFolder folder;
    for (const unsigned mode : {0755U, 0775U, 02770U, 0711U})
    {
        fs::create_directory(folder.Path("given"));
        ASSERT_EQ(chmod(folder.Path("given").c_str(), mode), 0);

        EXPECT_TRUE(port::CreatePrivateFolder(folder.Path("given").c_str()));
        EXPECT_EQ(ModeOf(folder.Path("given")), mode);
        fs::remove(folder.Path("given"));
    }
}

TEST(PosixRights, FoldersThatEveryUserMayWriteToAreClosedToThem)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.Path("open"));
    ASSERT_EQ(chmod(folder.Path("open").c_str(), 02777), 0);

    EXPECT_TRUE(port::CreatePrivateFolder(folder.Path("open").c_str()));
    EXPECT_EQ(ModeOf(folder.Path("open")), 02775U);
}

TEST(PosixRights, FoldersSharedByEverybodyOnPurposeAreRefusedAndLeftAlone)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.Path("shared"));
    ASSERT_EQ(chmod(folder.Path("shared").c_str(), 01777), 0);

    EXPECT_FALSE(port::CreatePrivateFolder(folder.Path("shared").c_str()));
    EXPECT_EQ(GetLastError(), 1336U);
    EXPECT_EQ(ModeOf(folder.Path("shared")), 01777U);
    EXPECT_TRUE(port::CreatePrivateFolder(folder.Path("shared/own").c_str()));
}

TEST(PosixRights, TellWhatOthersMayDo)
{
    struct Case
    {
        unsigned mode;
        bool read;
        bool write;
        const char* text;
    };
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "x");
    for (const Case& each : {Case{0600, false, false, "0600"}, Case{0400, false, false, "0400"},
                             Case{0700, false, false, "0700"}, Case{0640, true, false, "0640"},
                             Case{0604, true, false, "0604"}, Case{0620, false, true, "0620"},
                             Case{0602, false, true, "0602"}, Case{0666, true, true, "0666"},
                             Case{0611, false, false, "0611"}})
    {
        ASSERT_EQ(chmod(file.c_str(), each.mode), 0);
        const port::FileRights rights = port::RightsOf(file.c_str());
        EXPECT_EQ(rights.othersMayRead, each.read) << each.text;
        EXPECT_EQ(rights.othersMayWrite, each.write) << each.text;
        EXPECT_EQ(rights.mode, each.text);
    }
    EXPECT_EQ(port::RightsOf(folder.Path("missing").c_str()).mode, "");
}

TEST(PosixRights, TellWhatEverybodyMayDo)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.Path("folder"));
    struct Case
    {
        unsigned mode;
        bool write;
        bool sticky;
    };
    for (const Case& each : {Case{0700, false, false}, Case{0775, false, false},
                             Case{0777, true, false}, Case{01777, true, true}})
    {
        ASSERT_EQ(chmod(folder.Path("folder").c_str(), each.mode), 0);
        const port::FileRights rights = port::RightsOf(folder.Path("folder").c_str());
        EXPECT_EQ(rights.everybodyMayWrite, each.write) << each.mode;
        EXPECT_EQ(rights.isSticky, each.sticky) << each.mode;
    }
}

TEST(PosixRights, OfAnotherUserAreTold)
{
    EXPECT_EQ(port::BelongsToOther("/"), geteuid() != 0);
    const TemporaryFolder folder;
    EXPECT_FALSE(port::BelongsToOther(folder.Path().c_str()));
    EXPECT_FALSE(port::BelongsToOther(folder.Path("missing").c_str()));
}

TEST(PosixRights, OfAFileThatMayNotBeWrittenAreTold)
{
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "x");
    EXPECT_TRUE(port::IsWritableFile(file.c_str()));
    EXPECT_FALSE(port::IsWritableFile(folder.Path("missing").c_str()));
    ASSERT_EQ(chmod(file.c_str(), 0400), 0);
    EXPECT_EQ(port::IsWritableFile(file.c_str()), geteuid() == 0);
}

TEST(PosixRights, AreThoseOfWhatALinkLeadsTo)
{
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.Write("file", "x").c_str(), 0600), 0);
    fs::create_symlink(folder.Path("file"), folder.Path("link"));

    EXPECT_EQ(port::RightsOf(folder.Path("link").c_str()).mode, "0600");
}

TEST(PosixRights, LinksAreKnownWhereverTheyLead)
{
    const TemporaryFolder folder;
    fs::create_symlink(folder.Path("nowhere"), folder.Path("dangling"));
    fs::create_directory_symlink("/", folder.Path("folder"));
    folder.Write("file", "x");

    EXPECT_TRUE(port::IsLink(folder.Path("dangling").c_str()));
    EXPECT_TRUE(port::IsLink(folder.Path("folder").c_str()));
    EXPECT_FALSE(port::IsLink(folder.Path("file").c_str()));
    EXPECT_FALSE(port::IsLink(folder.Path().c_str()));
    EXPECT_FALSE(port::IsLink(folder.Path("missing").c_str()));
}

TEST(PosixSecrecyDeathTest, APrivateProcessLeavesNoCore)
{
    // In a child: it is the whole process that changes.
    EXPECT_EXIT(
        {
            port::KeepMemoryPrivate();
            rlimit cores = {};
            getrlimit(RLIMIT_CORE, &cores);
            const bool isPrivate = prctl(PR_GET_DUMPABLE) == 0 && cores.rlim_max == 0;
            std::raise(isPrivate ? SIGABRT : SIGTERM);
        },
        testing::KilledBySignal(SIGABRT), "");
}

} // namespace
