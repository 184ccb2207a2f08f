#include "benchmarks/check_bank.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "schema/installer.h"
#include "support/format.h"

#include <algorithm>
#include <stdexcept>

namespace benchmarks
{

namespace
{

constexpr std::size_t kRowsAtOnce = 500;

void Run(CDatabase& database, const std::wstring& statement)
{
    database.ExecuteSQLW(statement.c_str());
}

void AddHolder(CDatabase& database, const wchar_t* huid, const wchar_t* firstName,
               const wchar_t* lastName, const wchar_t* certificate)
{
    Run(database, support::FormatW(L"INSERT INTO SSR_HOLDER (HUID, VPNAME, FNAME, LNAME, "
                                   L"OPPOSITION) VALUES ('%s', 'IBEREXPO', N'%s', N'%s', '0')",
                                   huid, firstName, lastName));
    Run(database, support::FormatW(L"INSERT INTO SSR_HOLDERID (HUID, CN, SERIAL, EXPIRDATE) "
                                   L"VALUES ('%s', N'%s', '5A0C33F19B', '2030-12-31')",
                                   huid, certificate));
}

// Many rows a statement: a million of them one by one would take most of a benchmark's time.
void AddOthers(CDatabase& database, std::size_t others)
{
    for (std::size_t done = 0; done < others; done += kRowsAtOnce)
    {
        std::wstring holders =
            L"INSERT INTO SSR_HOLDER (HUID, VPNAME, FNAME, LNAME, OPPOSITION) VALUES ";
        std::wstring certificates =
            L"INSERT INTO SSR_HOLDERID (HUID, CN, SERIAL, EXPIRDATE) VALUES ";
        const std::size_t end = std::min(done + kRowsAtOnce, others);
        for (std::size_t i = done; i < end; ++i)
        {
            const wchar_t* const separator = i == done ? L"" : L",";
            const auto number = static_cast<unsigned int>(i);
            holders += support::FormatW(L"%s('X%u','IBEREXPO','Ana','Number%u','0')", separator,
                                        number, number);
            certificates += support::FormatW(L"%s('X%u','Holder Number%u','%08X','2030-12-31')",
                                             separator, number, number, number);
        }
        Run(database, holders);
        Run(database, certificates);
    }
}

void Fill(CDatabase& database, std::size_t rules, std::size_t others)
{
    schema::Install(database);
    database.BeginTransaction();
    AddHolder(database, L"FIRST", L"Mar\u00EDa Jos\u00E9", L"N\u00FA\u00F1ez Ib\u00E1\u00F1ez",
              L"First Signer");
    AddHolder(database, L"SECOND", L"Andr\u00E9s", L"Mu\u00F1oz de la Pe\u00F1a", L"Second Signer");
    Run(database, L"INSERT INTO SSR_CONTRACTCUR (CUID, VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, "
                  L"SERVER, PROFILE, ALLHOLDERS, OPPOSITION) VALUES ('IBEREXPO-CCT-9', 'IBEREXPO', "
                  L"'CCT', 'NOMINAS', 9, 1, 1, 1, 0, '0')");
    for (std::size_t i = 0; i < rules; ++i)
    {
        Run(database, L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL) "
                      L"VALUES ('IBEREXPO-CCT-9', 'FIRST', 'SECOND', 0, '75000000', 0)");
    }
    AddOthers(database, others);
    database.CommitTransaction();
}

} // namespace

void MakeBank(const std::string& connexionString, std::size_t rules, std::size_t others)
{
    std::string problem;
    database::GuardDatabase(
        [&]
        {
            CDatabase database;
            database.OpenEx(connexionString.c_str(),
                            CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            Fill(database, rules, others);
        },
        [&](const CDBException& raised) { problem = raised.GetText(); },
        [&] { problem = "the bank cannot be made"; });
    if (!problem.empty())
    {
        throw std::runtime_error(problem);
    }
}

} // namespace benchmarks
