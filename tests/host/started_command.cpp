#include "tests/host/started_command.h"

#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace testing_support
{

namespace
{

constexpr auto kLongestCommand = std::chrono::seconds(60);
constexpr auto kBetweenLooks = std::chrono::milliseconds(2);
constexpr int kSignalled = 256;

} // namespace

StartedCommand::StartedCommand(const std::string& folder, const std::vector<std::string>& arguments)
    : m_output(folder + "/output"), m_errors(folder + "/errors")
{
    std::vector<std::string> texts = {SIGNCHECK_PROGRAM};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
    {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const int mode = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, m_output.c_str(), mode, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, m_errors.c_str(), mode, 0600);
    EXPECT_EQ(posix_spawn(&m_process, pointers[0], &files, nullptr, pointers.data(), environ), 0);
    posix_spawn_file_actions_destroy(&files);
    EXPECT_GT(m_process, 1);
}

StartedCommand::~StartedCommand()
{
    if (m_process > 1)
    {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
}

void StartedCommand::Signal(int number) const
{
    ASSERT_GT(m_process, 1);
    EXPECT_EQ(kill(m_process, number), 0);
}

int StartedCommand::End()
{
    int status = 0;
    EXPECT_EQ(waitpid(m_process, &status, 0), m_process);
    m_process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

std::string StartedCommand::Output() const
{
    return ReadWholeFile(m_output);
}

std::string StartedCommand::Errors() const
{
    return ReadWholeFile(m_errors);
}

bool ComesToHold(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + kLongestCommand;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > end)
        {
            return false;
        }
        std::this_thread::sleep_for(kBetweenLooks);
    }
    return true;
}

} // namespace testing_support
