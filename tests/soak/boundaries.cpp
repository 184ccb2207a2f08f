// Stands before the driver manager's calls: the linker finds these first.

#include "tests/soak/boundaries.h"

#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <utility>

namespace soak
{

namespace
{

struct Watch
{
    bool on = false;
    int stop = 0;
    BoundaryStop atStop = nullptr;
    std::vector<std::string> passed;
};

Watch g_watch;

void Pass(std::string what)
{
    if (!g_watch.on)
    {
        return;
    }
    g_watch.passed.push_back(std::move(what));
    const int number = static_cast<int>(g_watch.passed.size());
    if (number == g_watch.stop)
    {
        g_watch.atStop(number, g_watch.passed.back());
    }
}

/// Statements are told apart by their ASCII letters.
template <typename Letter>
std::string AsciiOf(const Letter* text, SQLINTEGER length)
{
    std::string ascii;
    for (SQLINTEGER at = 0; length == SQL_NTS ? text[at] != 0 : at < length; ++at)
    {
        ascii += text[at] < 0x80 ? static_cast<char>(text[at]) : '?';
    }
    return ascii;
}

template <typename Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

void WatchBoundaries(int stop, BoundaryStop atStop)
{
    g_watch = {true, stop, atStop, {}};
}

std::vector<std::string> UnwatchBoundaries()
{
    g_watch.on = false;
    return std::move(g_watch.passed);
}

} // namespace soak

extern "C"
{

    SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* text,
                                        SQLSMALLINT length, SQLWCHAR* complete, SQLSMALLINT size,
                                        SQLSMALLINT* completeLength, SQLUSMALLINT completion)
    {
        static auto* const next = soak::Next<decltype(SQLDriverConnectW)>("SQLDriverConnectW");
        soak::Pass("connect");
        return next(connection, window, text, length, complete, size, completeLength, completion);
    }

    SQLRETURN SQL_API SQLDriverConnect(SQLHDBC connection, SQLHWND window, SQLCHAR* text,
                                       SQLSMALLINT length, SQLCHAR* complete, SQLSMALLINT size,
                                       SQLSMALLINT* completeLength, SQLUSMALLINT completion)
    {
        static auto* const next = soak::Next<decltype(SQLDriverConnect)>("SQLDriverConnect");
        soak::Pass("connect");
        return next(connection, window, text, length, complete, size, completeLength, completion);
    }

    SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length)
    {
        static auto* const next = soak::Next<decltype(SQLExecDirectW)>("SQLExecDirectW");
        soak::Pass(soak::AsciiOf(text, length));
        return next(statement, text, length);
    }

    SQLRETURN SQL_API SQLExecDirect(SQLHSTMT statement, SQLCHAR* text, SQLINTEGER length)
    {
        static auto* const next = soak::Next<decltype(SQLExecDirect)>("SQLExecDirect");
        soak::Pass(soak::AsciiOf(text, length));
        return next(statement, text, length);
    }

} // extern "C"
