// What does a whole check cost beside the bare ODBC calls that run exactly its statements? Both run
// on one SQLite file with the sample bank, one after the other in one run; the ratio is the figure.
// Both write their rows and events for real, so the disk's part is in both.

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "database/odbc.h"
#include "schema/installer.h"
#include "signutils/signutils.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#if !defined(NDEBUG)
#error "Benchmarks are for optimised builds."
#endif

namespace
{

std::string g_connexion;

void Fail(const char* what)
{
    std::fprintf(stderr, "whole_check: %s\n", what);
    std::exit(1);
}

// One connection with everything that bare calls need.
class BareConnection
{
public:
    BareConnection()
    {
        SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_environment);
        SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection);
        std::string text = g_connexion;
        if (!SQL_SUCCEEDED(SQLDriverConnect(m_connection, nullptr,
                                            reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS,
                                            nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT)))
        {
            Fail("cannot connect");
        }
    }
    ~BareConnection()
    {
        SQLDisconnect(m_connection);
        SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
        SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
    }
    BareConnection(const BareConnection&) = delete;
    BareConnection& operator=(const BareConnection&) = delete;

    // Runs a statement and reads every column of every row; returns the number of rows.
    int Run(std::string statement, SQLUSMALLINT columns)
    {
        SQLHSTMT handle = SQL_NULL_HSTMT;
        SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &handle);
        if (!SQL_SUCCEEDED(
                SQLExecDirect(handle, reinterpret_cast<SQLCHAR*>(statement.data()), SQL_NTS)))
        {
            Fail(statement.c_str());
        }
        int rows = 0;
        while (columns > 0 && SQL_SUCCEEDED(SQLFetch(handle)))
        {
            ++rows;
            SQLWCHAR buffer[256];
            SQLLEN length = 0;
            for (SQLUSMALLINT column = 1; column <= columns; ++column)
            {
                SQLGetData(handle, column, SQL_C_WCHAR, buffer, sizeof buffer, &length);
                benchmark::DoNotOptimize(buffer);
            }
        }
        SQLFreeHandle(SQL_HANDLE_STMT, handle);
        return rows;
    }

private:
    SQLHENV m_environment = SQL_NULL_HENV;
    SQLHDBC m_connection = SQL_NULL_HDBC;
};

// The statements of one accepted check by one holder, as the library writes them for SQLite.
int BareCheck(BareConnection& session, BareConnection& history, BareConnection& journal)
{
    const int rules = session.Run(
        "SELECT C.CUID, VPNAME, PROTOCOL, SERVER, VFNAME, VCNAME, TYPE, C.PROFILE, C.ALLHOLDERS, "
        "C.OPPOSITION, R.HUID1, R.HUID2, R.ALONE, R.AMOUNT, R.TLEVEL FROM SSR_CONTRACTCUR C, "
        "SSR_CONTRACTRULE R WHERE TYPE=1 AND C.CUID IS NOT NULL AND C.CUID = R.CUID AND "
        "C.VPNAME='IBEREXPO' AND C.VFNAME='CCT' AND C.VCNAME='NOMINAS' AND C.PROTOCOL=9 AND "
        "SERVER=1",
        15);
    const int holders = session.Run(
        "SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE FROM SSR_HOLDER H, "
        "SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='ES-0001' AND (LOWER(CN) = LOWER('José "
        "Núñez Ibáñez'))",
        8);
    history.Run("INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,"
                "IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) "
                "VALUES (strftime('%Y-%m-%d %H:%M:%S','now','localtime'),1,'1','IBEREXPO',9,'CCT',"
                "'NOMINAS',0,'BENCH',1,'José Núñez Ibáñez',' ','bench',"
                "'José Núñez Ibáñez',45000.000000,2500.000000,'/bench/order.xml')",
                0);
    static int key = 0;
    char event[512];
    std::snprintf(event, sizeof event,
                  "INSERT INTO EVT_JOURNAL (EVENTKEY,DATETIME,SOURCE,LEVEL,TEXT) VALUES "
                  "('bare-%031d','2026-01-01 00:00:00','RULSGN',0,'bench')",
                  ++key);
    journal.Run(event, 0);
    return rules * holders;
}

unsigned long WholeCheck()
{
    SignUtils session(nullptr, nullptr);
    session.SetConnexionString(g_connexion.c_str());
    session.SetContractInfo(1, 9, "IBEREXPO", "CCT", "NOMINAS", 1, "");
    session.SetAmountInfo(45000.00, 2500.00, "EUR");
    session.SetMessageInfo("BANKFRPP", "BENCH", "pain.001.001.03", "BENCH");
    return session.CheckSignRules("/bench/order.xml",
                                  L"Jos\u00E9 N\u00FA\u00F1ez Ib\u00E1\u00F1ez");
}

void BareStatements(benchmark::State& state)
{
    BareConnection session;
    BareConnection history;
    BareConnection journal;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(BareCheck(session, history, journal));
    }
}

void LibraryCheck(benchmark::State& state)
{
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(WholeCheck());
    }
}

BENCHMARK(BareStatements)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(LibraryCheck)->Unit(benchmark::kMicrosecond)->UseRealTime();

void Prepare(const std::filesystem::path& folder)
{
    g_connexion = "Driver=SQLite3;Database=" + (folder / "bank.db").string() +
                  ";SyncPragma=OFF;Timeout=10000";
    database::GuardDatabase(
        []
        {
            CDatabase database;
            database.OpenEx(g_connexion.c_str(),
                            CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            schema::Install(database);
            schema::InstallSample(database);
        },
        [](CDBException& raised) { Fail(raised.GetText()); }, [] { Fail("cannot prepare"); });
}

// Both contenders must find what the bank holds before they are timed.
void CompareContenders()
{
    BareConnection session;
    if (BareCheck(session, session, session) != 1 || WholeCheck() != 1)
    {
        Fail("the contenders do not agree");
    }
}

} // namespace

int main(int argc, char** argv)
{
    const auto folder = std::filesystem::temp_directory_path() / "signutils-whole-check-bench";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    setenv("SIGNUTILS_SPOOL", (folder / "spool").c_str(), 1);
    Prepare(folder);
    CompareContenders();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(folder);
    return 0;
}
