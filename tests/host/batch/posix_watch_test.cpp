// signcheck watch as a whole: it is started, given orders, and told to end by a signal.

#include "tests/host/batch/batch_world.h"
#include "tests/testing/exposition_reader.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace testing_support
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

constexpr auto kLong = std::chrono::seconds(60);

/// A child process that is ended at the end of the scope.
class Child
{
public:
    Child(std::vector<std::string> arguments, const std::string& output, const std::string& errors)
    {
        arguments.insert(arguments.begin(), SIGNCHECK_PROGRAM);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
        {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&files, 1, output.c_str(), O_WRONLY | O_CREAT, 0600);
        posix_spawn_file_actions_addopen(&files, 2, errors.c_str(), O_WRONLY | O_CREAT, 0600);
        if (posix_spawn(&m_id, SIGNCHECK_PROGRAM, &files, nullptr, pointers.data(), environ) != 0)
        {
            m_id = -1;
            ADD_FAILURE() << "signcheck cannot be started";
        }
        posix_spawn_file_actions_destroy(&files);
    }
    ~Child() { End(SIGKILL); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Signals it, once, and gives back how it ended: its status, -N for signal N.
    int End(int number)
    {
        if (m_id <= 1)
        {
            return -1;
        }
        kill(m_id, number);
        int status = 0;
        waitpid(m_id, &status, 0);
        return Outcome(status);
    }

    /// How it ended of its own accord, as End gives it; nothing while it runs.
    std::optional<int> Ended()
    {
        int status = 0;
        if (m_id > 1 && waitpid(m_id, &status, WNOHANG) == m_id)
        {
            m_ended = Outcome(status);
        }
        return m_ended;
    }

private:
    int Outcome(int status)
    {
        m_id = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    pid_t m_id = -1;
    std::optional<int> m_ended;
};

class PosixWatch : public BatchTest
{
protected:
    Child Start(std::vector<std::string> more = {})
    {
        more.emplace_back("--json");
        return StartWith(more);
    }

    Child StartWith(const std::vector<std::string>& more)
    {
        auto arguments = CheckOfFile(m_orders.Path(), "auto", "Élodie Lefèvre");
        arguments[0] = "watch";
        arguments.insert(arguments.end(), {"--settle", "1", "--jobs", "2"});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return {arguments, m_folder.Path("told"), m_folder.Path("errors")};
    }

    static bool WaitUntil(const std::function<bool()>& isTrue)
    {
        const auto end = std::chrono::steady_clock::now() + kLong;
        while (!isTrue() && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return isTrue();
    }

    std::map<std::string, nlohmann::json> Told()
    {
        Answer answer;
        answer.output = ReadWholeFile(m_folder.Path("told"));
        answer.errors = ReadWholeFile(m_folder.Path("errors"));
        return Lines(answer);
    }

    void ExpectOddNamesAreToldOnly(Child watch)
    {
        for (const std::size_t number : {1U, 2U})
        {
            Order(number == 1 ? "A\t1.xml" : "A\n2.xml");
            ASSERT_TRUE(WaitUntil([&] { return LinesTold() >= number; }));
        }
        Terms("A003.xml", "{}");
        Order("A003.xml");
        ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 3; }));

        EXPECT_EQ(watch.End(SIGTERM), 0);

        EXPECT_THAT(ReadWholeFile(m_folder.Path("told")),
                    HasSubstr("the file's name holds a control character. Rename it."));
        EXPECT_EQ(Told().at("")["summary"]["accepted"], 1);
        EXPECT_EQ(Told().at("")["summary"]["notJudged"], 2);
        EXPECT_THAT(Rows(), ElementsAre(Pair("A003.xml", 1)));
    }

    std::size_t LinesTold()
    {
        const std::string told =
            fs::exists(m_folder.Path("told")) ? ReadWholeFile(m_folder.Path("told")) : "";
        return static_cast<std::size_t>(std::count(told.begin(), told.end(), '\n'));
    }
};

TEST_F(PosixWatch, JudgesEachOrderOnceAndEndsCleanly)
{
    Order("A001.xml");
    Child watch = Start();
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; }));
    Order("A002.xml");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 2; }));

    EXPECT_EQ(watch.End(SIGTERM), 0);

    const auto told = Told();
    EXPECT_EQ(told.at("A001.xml")["outcome"], "success");
    EXPECT_EQ(told.at("A002.xml")["outcome"], "success");
    EXPECT_EQ(told.at("")["summary"]["accepted"], 2);
    EXPECT_EQ(ReadWholeFile(m_folder.Path("errors")), "");
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1), Pair("A002.xml", 1)));
    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml", "A002.xml"));
}

// Whoever may drop a file must not end the judging of everybody's orders.
TEST_F(PosixWatch, GoesOnBesideNamesWithControlCharacters)
{
    ExpectOddNamesAreToldOnly(Start());
}

TEST_F(PosixWatch, GoesOnBesideNamesWithControlCharactersThatLackTheirTerms)
{
    ExpectOddNamesAreToldOnly(Start({"--sidecar"}));
}

TEST_F(PosixWatch, TellsRowsOfCsvAsTheyCome)
{
    Child watch = StartWith({"--output-format", "csv"});
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; })); // the names, before any order
    Order("A001.xml");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 2; }));

    EXPECT_EQ(watch.End(SIGTERM), 0);

    const std::string told = ReadWholeFile(m_folder.Path("told"));
    EXPECT_THAT(told, testing::StartsWith("file,signers,verdict,outcome,"));
    EXPECT_THAT(told, HasSubstr("\r\n" + Named("A001.xml") + ","));
    EXPECT_THAT(ReadWholeFile(m_folder.Path("errors")),
                testing::StartsWith("signcheck: 1 accepted, 0 refused"));
}

TEST_F(PosixWatch, WritesItsMeasuresFromTheBeginningAndAtTheEnd)
{
    const std::string file = m_folder.Path("orders.prom");
    const auto checks = [&file]
    { return ExpositionReader(ReadWholeFile(file)).Sum("signutils_checks_total"); };
    Child watch = Start({"--metrics", file});
    ASSERT_TRUE(WaitUntil([&file] { return fs::exists(file); }));
    EXPECT_EQ(checks(), 0.0);
    EXPECT_EQ(ModeOf(file), 0644U);
    Order("A001.xml");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; }));

    EXPECT_EQ(watch.End(SIGTERM), 0);
    EXPECT_EQ(checks(), 1.0);
    EXPECT_EQ(ReadWholeFile(m_folder.Path("errors")), "");
}

TEST_F(PosixWatch, WritesItsMeasuresAgainWhileItRuns)
{
    const std::string file = m_folder.Path("orders.prom");
    Child watch = Start({"--metrics", file});
    Order("A001.xml");
    EXPECT_TRUE(WaitUntil(
        [&file]
        {
            return fs::exists(file) &&
                   ExpositionReader(ReadWholeFile(file)).Sum("signutils_checks_total") == 1.0;
        }));
    EXPECT_EQ(watch.End(SIGTERM), 0);
}

TEST_F(PosixWatch, JudgesNoOrderBeforeItIsWhole)
{
    const std::string whole = ReadWholeFile(Order("sample.xml"));
    fs::remove(m_orders.Path("sample.xml"));
    Child watch = Start();
    {
        std::ofstream slow(m_orders.Path("A001.xml"), std::ios::binary);
        const std::size_t third = whole.size() / 3;
        for (const std::size_t piece : {0U, 1U, 2U})
        {
            slow << whole.substr(piece * third, piece == 2 ? std::string::npos : third)
                 << std::flush;
            std::this_thread::sleep_for(std::chrono::milliseconds(1200)); // longer than --settle
            EXPECT_EQ(LinesTold(), 0U);
        }
    }
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; }));

    EXPECT_EQ(watch.End(SIGINT), 0);
    EXPECT_EQ(Told().at("A001.xml")["total"], 350.5);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(PosixWatch, GoesOnWhereItWasAfterItWasKilled)
{
    for (int number = 0; number < 12; ++number)
    {
        Order("A" + std::to_string(100 + number) + ".xml");
    }
    {
        Child watch = Start();
        ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 3; }));
        EXPECT_EQ(watch.End(SIGKILL), -SIGKILL);
    }
    fs::remove(m_folder.Path("told"));
    Child watch = Start();
    ASSERT_TRUE(WaitUntil([this] { return Rows().size() == 12; }));
    EXPECT_EQ(watch.End(SIGTERM), 0);

    for (const auto& [name, rows] : Rows())
    {
        EXPECT_EQ(rows, 1) << name;
    }
}

TEST_F(PosixWatch, JudgesWhatCameWhileTheDatabaseWasAway)
{
    const auto lock = [this](const wchar_t* table, const wchar_t* name)
    { m_database.Execute(std::wstring(L"ALTER TABLE ") + table + L" RENAME TO " + name); };
    Child watch = Start();
    Order("A001.xml");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; }));
    lock(L"HST_SIGNRULES", L"HST_AWAY");
    Order("A002.xml");
    ASSERT_TRUE(WaitUntil([this] { return !ReadWholeFile(m_folder.Path("errors")).empty(); }));
    EXPECT_EQ(LinesTold(), 1U);

    lock(L"HST_AWAY", L"HST_SIGNRULES");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 2; }));

    EXPECT_EQ(watch.End(SIGTERM), 0);
    EXPECT_THAT(ReadWholeFile(m_folder.Path("errors")), HasSubstr("the database answers again"));
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1), Pair("A002.xml", 1)));
}

TEST_F(PosixWatch, EndsWhenItsFolderGoesAway)
{
    Child watch = Start();
    ASSERT_TRUE(WaitUntil([this] { return fs::exists(Journal()); }));
    // The folder is watched once the journal is there; a file shows that it is.
    Order("A001.xml");
    ASSERT_TRUE(WaitUntil([this] { return LinesTold() >= 1; }));

    fs::rename(m_orders.Path(), m_orders.Path() + ".away");
    WaitUntil([&] { return watch.Ended().has_value(); });
    fs::rename(m_orders.Path() + ".away", m_orders.Path());

    EXPECT_EQ(watch.Ended(), 3);
    EXPECT_THAT(ReadWholeFile(m_folder.Path("errors")), HasSubstr("is gone"));
}

} // namespace
} // namespace testing_support
