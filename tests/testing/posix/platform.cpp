#include "tests/testing/platform.h"

#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace testing_support
{

namespace
{

// One word of a shell command; nothing in single quotes has a meaning but the quote.
std::string ShellWord(const std::string& text)
{
    std::string word = "'";
    for (const char character : text)
    {
        word += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return word + "'";
}

} // namespace

void SetVariable(const std::string& name, const char* value)
{
    if (value == nullptr)
    {
        unsetenv(name.c_str());
    }
    else
    {
        setenv(name.c_str(), value, 1);
    }
}

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& outputFile, const std::string& errorsFile)
{
    std::string command = ShellWord(program);
    for (const std::string& argument : arguments)
    {
        command += " " + ShellWord(argument);
    }
    command += " >" + ShellWord(outputFile) + " 2>" + ShellWord(errorsFile) + " </dev/null";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool IsForOwnerOnly(const std::string& path)
{
    using std::filesystem::perms;
    return (std::filesystem::status(path).permissions() & (perms::group_all | perms::others_all)) ==
           perms::none;
}

std::string PathForDrivers(const std::string& path)
{
    return path;
}

} // namespace testing_support
