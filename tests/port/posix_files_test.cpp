#include "port/files.h"
#include "port/plain_file.h"
#include "tests/testing/file_mode.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

// Ways of the POSIX file system that the callers stand on.

namespace
{

namespace fs = std::filesystem;
using port::File;
using port::OpenMode;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

mode_t PermissionsOf(const std::string& path)
{
    struct stat information = {};
    EXPECT_EQ(stat(path.c_str(), &information), 0) << path;
    return information.st_mode & 0777;
}

TEST(PosixFiles, NewFilesAreReadableByTheirOwnerOnly)
{
    const TemporaryFolder folder;
    File file;
    ASSERT_TRUE(file.Open(folder.Path("new").c_str(), OpenMode::CreateNew));
    ASSERT_TRUE(file.Open(folder.Path("spool").c_str(), OpenMode::Append));
    EXPECT_EQ(PermissionsOf(folder.Path("new")), 0600U);
    EXPECT_EQ(PermissionsOf(folder.Path("spool")), 0600U);
}

TEST(PosixFiles, NewFilesForReadersAreReadableByAllWhateverTheMask)
{
    const TemporaryFolder folder;
    const testing_support::ScopedMask mask(077);
    File file;
    ASSERT_TRUE(file.Open(folder.Path("measures").c_str(), OpenMode::CreateNewForReaders));
    EXPECT_EQ(PermissionsOf(folder.Path("measures")), 0644U);
    EXPECT_FALSE(file.Open(folder.Path("measures").c_str(), OpenMode::CreateNewForReaders));
    EXPECT_EQ(GetLastError(), 80U);
}

TEST(PosixFiles, NewFileIsNeverMadeThroughALink)
{
    const TemporaryFolder folder;
    fs::create_symlink(folder.Path("target"), folder.Path("link"));
    File file;
    EXPECT_FALSE(file.Open(folder.Path("link").c_str(), OpenMode::CreateNew));
    EXPECT_EQ(GetLastError(), 80U);
    EXPECT_FALSE(fs::exists(folder.Path("target")));
}

TEST(PosixFiles, WithoutLinksNothingIsOpenedOrMadeThroughOne)
{
    const TemporaryFolder folder;
    const std::string target = folder.Write("target", "x");
    fs::create_symlink(target, folder.Path("link"));
    fs::create_symlink(folder.Path("made"), folder.Path("dangling"));
    for (const char* const name : {"link", "dangling"})
    {
        File file;
        EXPECT_FALSE(file.Open(folder.Path(name).c_str(), OpenMode::AppendNoLink));
        EXPECT_EQ(GetLastError(), 5U);
    }
    EXPECT_FALSE(fs::exists(folder.Path("made")));
    File file;
    EXPECT_TRUE(file.Open(folder.Path("link").c_str(), OpenMode::Append)); // else nothing is shown
}

TEST(PosixFiles, WhatIsNoPlainFileIsNotReadAndNotWaitedFor)
{
    const TemporaryFolder folder;
    fs::create_symlink(folder.Write("target", "x"), folder.Path("link"));
    fs::create_symlink(folder.Path("none"), folder.Path("dangling"));
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    std::string bytes;
    for (const std::string& path : {folder.Path("link"), folder.Path("dangling"),
                                    folder.Path("pipe"), std::string("/dev/null")})
    {
        EXPECT_EQ(port::ReadPlainFile(path.c_str(), 10, bytes), port::PlainFile::Other) << path;
        EXPECT_EQ(bytes, "");
    }
}

TEST(PosixFiles, PlainFileThatCannotBeReadTellsItsReason)
{
    const TemporaryFolder folder;
    std::string bytes;
    EXPECT_EQ(port::ReadPlainFile(folder.Path(std::string(300, 'n')).c_str(), 10, bytes),
              port::PlainFile::Failed);
    EXPECT_EQ(GetLastError(), 123U);
    // A plain file whose first byte nobody can read.
    EXPECT_EQ(port::ReadPlainFile("/proc/self/mem", 10, bytes), port::PlainFile::Failed);
    EXPECT_EQ(GetLastError(), 30U);
}

TEST(PosixFiles, PrivateFoldersAreForTheirOwnerOnly)
{
    const TemporaryFolder folder;
    ASSERT_TRUE(port::CreatePrivateFolder(folder.Path("a/b").c_str()));
    EXPECT_EQ(PermissionsOf(folder.Path("a")), 0700U);
    EXPECT_EQ(PermissionsOf(folder.Path("a/b")), 0700U);
}

TEST(PosixFiles, FolderOfAnotherUserIsRefused)
{
    const TemporaryFolder folder;
    std::string foreign = "/";
    if (geteuid() == 0)
    {
        foreign = folder.Path("foreign");
        fs::create_directory(foreign);
        ASSERT_EQ(chown(foreign.c_str(), 1, static_cast<gid_t>(-1)), 0);
    }
    EXPECT_FALSE(port::CreatePrivateFolder(foreign.c_str()));
    EXPECT_EQ(GetLastError(), 1307U);
}

TEST(PosixFiles, LinkIsDeletedAndNotItsTarget)
{
    const TemporaryFolder folder;
    const std::string target = folder.Write("target", "x");
    fs::create_symlink(target, folder.Path("link"));
    EXPECT_NE(DeleteFileA(folder.Path("link").c_str()), 0);
    EXPECT_TRUE(fs::exists(target));
}

TEST(PosixFiles, TemporaryFolderFollowsTheEnvironment)
{
    const TemporaryFolder folder;
    {
        const ScopedEnvironment chosen("TMPDIR", (folder.Path() + "//").c_str());
        EXPECT_EQ(port::TemporaryFolder(), folder.Path());
    }
    const ScopedEnvironment none("TMPDIR", nullptr);
    EXPECT_EQ(port::TemporaryFolder(), "/tmp");
    const ScopedEnvironment relative("TMPDIR", "here");
    EXPECT_EQ(port::TemporaryFolder(), "/tmp");
}

TEST(PosixFiles, FullDiskIsTold)
{
    File file;
    ASSERT_TRUE(file.Open("/dev/full", OpenMode::Append));
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_EQ(GetLastError(), 112U);
}

TEST(PosixFiles, MoveToAnotherVolumeIsRefused)
{
    const TemporaryFolder folder;
    const std::string from = folder.Write("from", "x");
    EXPECT_FALSE(port::MoveFileReplacing(from.c_str(), "/proc/signutils-test"));
    EXPECT_TRUE(fs::exists(from));
}

// The real call may change it.
TEST(PosixFiles, DeletingAFileLeavesTheLastError)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.veu", "x");
    SetLastError(4711);
    EXPECT_NE(DeleteFileA(path.c_str()), 0);
    EXPECT_EQ(GetLastError(), 4711U);
}

} // namespace
