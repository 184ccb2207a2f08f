// Faults that are planted with modes of files, a class registry file and users of POSIX.

#include "tests/host/doctor/doctor_bank.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PosixDoctor : public DoctorBank
{
protected:
    void SetMode(const std::string& path, mode_t mode) const
    {
        ASSERT_EQ(chmod(path.c_str(), mode), 0) << path;
    }
};

TEST_F(PosixDoctor, AStoreThatEveryUserMayWriteIsTold)
{
    SetMode(m_folder.Path("handoff"), 0777);

    EXPECT_THAT(Told(Doctor(), "store"),
                ElementsAre(AllOf(StartsWith("warning: the folder "), HasSubstr("(mode 0777)"),
                                  HasSubstr("chmod o-w "))));
}

TEST_F(PosixDoctor, AStoreThatAGroupMayWriteIsInOrder)
{
    SetMode(m_folder.Path("handoff"), 02770);

    EXPECT_THAT(Told(Doctor(), "store"),
                ElementsAre(AllOf(StartsWith("ok: "), HasSubstr("mode 2770"))));
}

TEST_F(PosixDoctor, ASpoolThatIsSharedByEverybodyFails)
{
    SetMode(m_folder.Path("spool"), 01777);

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "spool"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("shared by everybody"),
                                  HasSubstr("of the host's own"))));
}

TEST_F(PosixDoctor, AStoreThatCannotBeWrittenFails)
{
    SetMode(m_folder.Path("handoff"), 0500);

    const Answer answer = Doctor();

    if (geteuid() == 0) // may write everywhere
    {
        EXPECT_EQ(answer.status, 0);
        EXPECT_THAT(Told(answer, "store"), ElementsAre(Not(HasSubstr("cannot be written"))));
        return;
    }
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "store"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("cannot be written"),
                                  HasSubstr("chmod u+rwx"))));
}

TEST_F(PosixDoctor, AStoreOfAnotherUserFails)
{
    std::string store = "/"; // root's
    if (geteuid() == 0)
    {
        store = m_folder.Path("handoff");
        ASSERT_EQ(chown(store.c_str(), 65534, 65534), 0);
    }

    const Answer answer = Doctor({"--hand-off", store});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "store"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("belongs to another user"),
                                  HasSubstr("chown USER"))));
}

TEST_F(PosixDoctor, AProgressFolderThatAGroupMayWriteFails)
{
    for (const mode_t mode : {0770U, 0777U})
    {
        SetMode(m_folder.Path("progress"), mode);

        const Answer answer = Doctor();

        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(Told(answer, "progress"),
                    ElementsAre(AllOf(StartsWith("failed: the folder "),
                                      HasSubstr("may be written by others (mode 077"),
                                      HasSubstr("chmod 700 "))));
    }
}

TEST_F(PosixDoctor, AProgressFolderThatIsSharedByEverybodyFails)
{
    SetMode(m_folder.Path("progress"), 01777);

    EXPECT_THAT(
        Told(Doctor(), "progress"),
        ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("so that signcheck refuses it"))));
}

TEST_F(PosixDoctor, AProgressFolderThatOthersMayReadIsTold)
{
    SetMode(m_folder.Path("progress"), 0755);

    EXPECT_THAT(Told(Doctor(), "progress"),
                ElementsAre(AllOf(StartsWith("warning: the folder "), HasSubstr("(mode 0755)"),
                                  HasSubstr("chmod 700 "))));
}

TEST_F(PosixDoctor, AProgressFolderThatCannotBeWrittenFails)
{
    SetMode(m_folder.Path("progress"), 0500);

    const Answer answer = Doctor();

    if (geteuid() == 0) // may write everywhere
    {
        EXPECT_THAT(Told(answer, "progress"), ElementsAre(StartsWith("ok: ")));
        return;
    }
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "progress"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("cannot be written"),
                                  HasSubstr("chmod u+rwx"))));
}

TEST_F(PosixDoctor, AJournalThatOthersMayHaveWrittenFails)
{
    SetMode(m_folder.Write("progress/in-1.progress", ""), 0666);
    ASSERT_EQ(symlink("elsewhere", m_folder.Path("progress/in-2.progress").c_str()), 0);

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "progress"),
                ElementsAre(AllOf(StartsWith("failed: the journal 'in-1.progress' has mode 0666"),
                                  HasSubstr("signcheck history")),
                            StartsWith("failed: the journal 'in-2.progress' is a link")));
}

TEST_F(PosixDoctor, ADatabaseFileThatOthersMayReadIsTold)
{
    if (DatabaseFile().empty())
    {
        GTEST_SKIP() << "needs a database in a file";
    }
    SetMode(std::filesystem::path(DatabaseFile()).parent_path().string(), 0755);
    SetMode(DatabaseFile(), 0644);

    EXPECT_THAT(Told(Doctor(), "rights"),
                ElementsAre(AllOf(StartsWith("warning: the database file has mode 0644"),
                                  HasSubstr("chmod 600 "))));
}

TEST_F(PosixDoctor, AFolderOfTheDatabaseThatOthersMayWriteIsTold)
{
    if (DatabaseFile().empty())
    {
        GTEST_SKIP() << "needs a database in a file";
    }
    SetMode(std::filesystem::path(DatabaseFile()).parent_path().string(), 0770);
    SetMode(DatabaseFile(), 0600);

    EXPECT_THAT(Told(Doctor(), "rights"),
                ElementsAre(AllOf(StartsWith("warning: the folder of the database file has mode "
                                             "0770"),
                                  HasSubstr("chmod 700 "))));
}

TEST_F(PosixDoctor, AnEngineThatNoRegistryNamesFails)
{
    const ScopedEnvironment registry("SIGNUTILS_COM_REGISTRY", m_folder.Path("none.ini").c_str());

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "engine"),
                ElementsAre(AllOf(StartsWith("failed: no conversion engine is registered"),
                                  HasSubstr("signutils-com.ini"))));
}

TEST_F(PosixDoctor, AnEngineWhoseModuleIsNotThereFails)
{
    const std::string registry = m_folder.Write(
        "com.ini", "[InprocServer32]\n{4894D747-9646-40D9-BFD9-2A31050BEC91} = nowhere.so\n");
    const ScopedEnvironment named("SIGNUTILS_COM_REGISTRY", registry.c_str());

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "engine"),
                ElementsAre(AllOf(StartsWith("failed: the conversion engine cannot be started"),
                                  HasSubstr("can be loaded"))));
}

TEST_F(PosixDoctor, ASettingsFileThatOthersMayWriteIsTold)
{
    const std::string file = m_folder.Write("bank.toml", "[history]\nlimit = 20\n");
    SetMode(file, 0666);

    EXPECT_THAT(Told(Doctor({"--config", file}), "settings"),
                ElementsAre(AllOf(StartsWith("warning: the settings file "), HasSubstr("mode 0666"),
                                  HasSubstr("chmod go-w "))));
}

TEST_F(PosixDoctor, WithoutAFolderForTemporaryFilesFailsWhereItNeedsOne)
{
    // The test itself needs one.
    const std::string command = "TMPDIR='" + m_folder.Path("nowhere") +
                                "' '" SIGNCHECK_PROGRAM "' doctor --json --db '" + Db() + "' > '" +
                                m_folder.Path("answer") + "'";
    const int ended = std::system(command.c_str());
    Answer answer;
    answer.output = ReadWholeFile(m_folder.Path("answer"));

    EXPECT_TRUE(WIFEXITED(ended) && WEXITSTATUS(ended) == 1);
    EXPECT_THAT(Told(answer, "engine"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("TMPDIR"))));
    EXPECT_THAT(Told(answer, "copies"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("TMPDIR"))));
}

} // namespace
} // namespace testing_support
