#include "port/program.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace port
{

namespace
{

bool TakesColours(int descriptor)
{
    const std::string terminal = Utf8Environment("TERM");
    return isatty(descriptor) == 1 && !terminal.empty() && terminal != "dumb";
}

} // namespace

std::vector<std::string> Utf8Arguments(int count, char** values)
{
    if (count < 2)
    {
        return {};
    }
    return {values + 1, values + count};
}

std::string Utf8Environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

std::vector<std::string> Utf8EnvironmentNames()
{
    std::vector<std::string> names;
    for (const char* const* entry = environ; entry != nullptr && *entry != nullptr; ++entry)
    {
        const std::string_view text = *entry;
        names.emplace_back(text.substr(0, text.find('=')));
    }
    return names;
}

void UseUtf8Output() {}

void FailBeyondFileLimit()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

void KeepNewFilesPrivate()
{
    constexpr mode_t kOthers = 077;
    umask(kOthers);
}

bool InputIsTerminal()
{
    return isatty(STDIN_FILENO) == 1;
}

bool ErrorIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

std::size_t ErrorColumns()
{
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool OutputTakesColours()
{
    return TakesColours(STDOUT_FILENO);
}

bool ErrorTakesColours()
{
    return TakesColours(STDERR_FILENO);
}

std::string MachineName()
{
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 ? std::string(name) : std::string();
}

bool IsProcessRunning(std::uint32_t process)
{
    // 0 and what is no pid_t would name groups of processes.
    if (process == 0 ||
        process > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
    {
        return false;
    }
    return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

} // namespace port
