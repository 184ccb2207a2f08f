// An ODBC driver for tests that repeats the whole connection string in each of its messages, as
// some drivers do, and says what a core of its process would hold. It connects when the string has
// ECHO=CONNECT, and then refuses every statement; else it refuses to connect. With BARE=… it
// repeats the password without its key, as it came (given) or one with an accent in the code that
// is named (1252, utf8, marks). It has no wide entry points, so that the driver manager converts
// what comes in UTF-16.

#include "tests/testing/odbc_texts.h"

#include <sql.h>
#include <sqlext.h>

#include <fstream>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace
{

// One connection at a time is enough for a test.
std::string g_connectionString;

/// Whether the text stands in the command line that every user of the machine can list.
bool StandsInTheProcessList(const std::string& text)
{
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    const std::string all((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return all.find(text) != std::string::npos;
}

/// The value of a setting without braces; empty when there is none.
std::string ValueOf(const std::string& key)
{
    const std::size_t at = g_connectionString.find(key + "=");
    if (at == std::string::npos)
    {
        return {};
    }
    const std::size_t begin = at + key.size() + 1;
    return g_connectionString.substr(begin, g_connectionString.find(';', begin) - begin);
}

std::string Repeated()
{
    const std::string bare = ValueOf("BARE");
    if (bare == "1252")
    {
        return "s\xE9ntinel";
    }
    if (bare == "utf8")
    {
        return "s\xC3\xA9ntinel";
    }
    if (bare == "marks")
    {
        return "s?ntinel";
    }
    return bare == "given" ? ValueOf("PWD") : g_connectionString;
}

std::string Message()
{
    rlimit cores = {};
    getrlimit(RLIMIT_CORE, &cores);
    return "no luck with \"" + Repeated() + "\"" +
           " dumpable=" + std::to_string(prctl(PR_GET_DUMPABLE)) +
           " core-limit=" + std::to_string(cores.rlim_cur) +
           " listed=" + (StandsInTheProcessList(g_connectionString) ? "yes" : "no");
}

SQLHANDLE AnyHandle()
{
    static char place = 0;
    return &place;
}

} // namespace

extern "C"
{

    SQLRETURN SQLAllocHandle(SQLSMALLINT, SQLHANDLE, SQLHANDLE* handle)
    {
        *handle = AnyHandle();
        return SQL_SUCCESS;
    }

    SQLRETURN SQLFreeHandle(SQLSMALLINT, SQLHANDLE)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLFreeStmt(SQLHSTMT, SQLUSMALLINT)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLSetConnectAttr(SQLHDBC, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLDriverConnect(SQLHDBC, SQLHWND, SQLCHAR* text, SQLSMALLINT length, SQLCHAR*,
                               SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT)
    {
        g_connectionString = testing_support::OdbcText(text, length);
        return g_connectionString.find("ECHO=CONNECT") == std::string::npos ? SQL_ERROR
                                                                            : SQL_SUCCESS;
    }

    SQLRETURN SQLDisconnect(SQLHDBC)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLGetInfo(SQLHDBC, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT size,
                         SQLSMALLINT* length)
    {
        if (what != SQL_DBMS_NAME || size <= 0)
        {
            return SQL_ERROR;
        }
        testing_support::TellText("Echo", value, size, length);
        return SQL_SUCCESS;
    }

    SQLRETURN SQLNativeSql(SQLHDBC, SQLCHAR* text, SQLINTEGER length, SQLCHAR* native,
                           SQLINTEGER size, SQLINTEGER* nativeLength)
    {
        testing_support::TellText(testing_support::OdbcText(text, length), native, size,
                                  nativeLength);
        return SQL_SUCCESS;
    }

    SQLRETURN SQLExecDirect(SQLHSTMT, SQLCHAR*, SQLINTEGER)
    {
        return SQL_ERROR;
    }

    // The driver manager asks a driver for statements' messages only if it has this one too.
    SQLRETURN SQLGetDiagField(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER,
                              SQLSMALLINT, SQLSMALLINT*)
    {
        return SQL_NO_DATA;
    }

    SQLRETURN SQLGetDiagRec(SQLSMALLINT, SQLHANDLE, SQLSMALLINT number, SQLCHAR* state,
                            SQLINTEGER* native, SQLCHAR* text, SQLSMALLINT size,
                            SQLSMALLINT* length)
    {
        if (number != 1)
        {
            return SQL_NO_DATA;
        }
        return testing_support::TellDiagnosis({"28000", 7, Message()},
                                              {state, native, text, size, length});
    }

} // extern "C"
