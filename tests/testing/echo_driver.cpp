// An ODBC driver for tests that repeats the whole connection string in each of its messages, as
// some drivers do, and says what a core of its process would hold. It connects when the string has
// ECHO=CONNECT, and then refuses every statement; else it refuses to connect. It has no wide entry
// points, so that the driver manager converts what comes in UTF-16.

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace
{

// One connection at a time is enough for a test.
std::string g_connectionString;

std::string TextOf(const SQLCHAR* text, SQLINTEGER length)
{
    const char* const bytes = reinterpret_cast<const char*>(text);
    return length == SQL_NTS ? std::string(bytes)
                             : std::string(bytes, static_cast<std::size_t>(length));
}

/// Whether the text stands in the command line that every user of the machine can list.
bool StandsInTheProcessList(const std::string& text)
{
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    const std::string all((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return all.find(text) != std::string::npos;
}

std::string Message()
{
    rlimit cores = {};
    getrlimit(RLIMIT_CORE, &cores);
    return "no luck with \"" + g_connectionString + "\"" +
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
        g_connectionString = TextOf(text, length);
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
        constexpr char kName[] = "Echo";
        const std::size_t room = static_cast<std::size_t>(size) - 1;
        const std::size_t count = std::min(room, std::strlen(kName));
        std::memcpy(value, kName, count);
        static_cast<char*>(value)[count] = '\0';
        if (length != nullptr)
        {
            *length = static_cast<SQLSMALLINT>(count);
        }
        return SQL_SUCCESS;
    }

    SQLRETURN SQLNativeSql(SQLHDBC, SQLCHAR* text, SQLINTEGER length, SQLCHAR* native,
                           SQLINTEGER size, SQLINTEGER* nativeLength)
    {
        const std::string statement = TextOf(text, length);
        if (native != nullptr && size > 0)
        {
            const std::size_t count =
                std::min(statement.size(), static_cast<std::size_t>(size) - 1);
            std::memcpy(native, statement.data(), count);
            native[count] = '\0';
        }
        if (nativeLength != nullptr)
        {
            *nativeLength = static_cast<SQLINTEGER>(statement.size());
        }
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
        const std::string message = Message();
        std::memcpy(state, "28000", 6);
        if (native != nullptr)
        {
            *native = 7;
        }
        if (text != nullptr && size > 0)
        {
            const std::size_t count = std::min(message.size(), static_cast<std::size_t>(size) - 1);
            std::memcpy(text, message.data(), count);
            text[count] = '\0';
        }
        if (length != nullptr)
        {
            *length = static_cast<SQLSMALLINT>(message.size());
        }
        return SQL_SUCCESS;
    }

} // extern "C"
