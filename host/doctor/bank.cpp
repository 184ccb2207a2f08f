#include "host/doctor/bank.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "database/installed_drivers.h"
#include "database/server_facts.h"
#include "host/doctor/driver.h"
#include "host/driver_facts.h"
#include "host/text.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"

namespace doctor
{

namespace
{

constexpr const char* kBankCheck = "database";

/// How an attempt to connect ended.
struct Attempt
{
    bool isOpen = false;
    std::string reason;
    std::string state;
    DWORD milliseconds = 0;
    database::ServerFacts facts;
};

Attempt Connect(const Bank& bank)
{
    Attempt attempt;
    const DWORD begin = GetTickCount();
    attempt.isOpen = database::GuardDatabase(
        [&]
        {
            bank.database.OpenEx(bank.where.text.c_str(),
                                 CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            attempt.milliseconds = GetTickCount() - begin;
            attempt.facts = database::FactsOf(bank.database);
        },
        [&attempt](const CDBException& raised)
        {
            attempt.reason = support::Utf8FromNarrow(raised.GetText());
            attempt.state = raised.GetState();
        },
        [&attempt] { attempt.reason = "unknown error"; });
    return attempt;
}

std::string Shown(const std::string& narrow)
{
    return host::Printable(support::Utf8FromNarrow(narrow));
}

// The driver would make the file.
bool IsFileMissing(const database::ConnectionString& parts)
{
    const std::string path = parts.Value("DATABASE");
    return host::NamesSqlite(parts) && !path.empty() && !port::FileExists(path.c_str());
}

Finding MissingFile(const database::ConnectionString& parts)
{
    return {kBankCheck, Outcome::Failed,
            "the database file " + host::Quoted(support::Utf8FromNarrow(parts.Value("DATABASE"))) +
                " is not there",
            "Correct Database= in the connection string, or make it: signcheck init --db CONN."};
}

Finding CannotOpen(const database::ConnectionString& parts, const Bank& bank,
                   const Attempt& attempt)
{
    return {kBankCheck, Outcome::Failed,
            host::Quoted(bank.where.shown) +
                " cannot be opened: " + host::Printable(attempt.reason),
            host::NamesSqlite(parts)
                ? "Correct Database= in the connection string: it must be a database file that "
                  "this user may read."
                : "See that the server runs and answers on its port, and that server, database, "
                  "user and password of the connection string are right."};
}

Finding CannotLoad(const Attempt& attempt, const std::string& driver)
{
    const std::string package = PackageAdvice(driver);
    return {"driver", Outcome::Failed,
            "the driver cannot be loaded: " + host::Printable(attempt.reason),
            package.empty() ? "Install the driver anew, and see with odbcinst -q -d -n NAME which "
                              "file its name stands for."
                            : "Install the driver anew: " + package +
                                  ", and see with odbcinst -q -d -n NAME which file its name "
                                  "stands for."};
}

} // namespace

bool OpenBank(const Bank& bank, Findings& findings)
{
    const database::ConnectionString parts(bank.where.text);
    findings.push_back(CheckDriverName(parts, database::InstalledDrivers()));
    if (findings.back().outcome != Outcome::Ok)
    {
        findings.push_back({kBankCheck, Outcome::NotLooked, "its driver is not there", ""});
        return false;
    }
    if (IsFileMissing(parts))
    {
        findings.push_back(MissingFile(parts));
        return false;
    }
    const Attempt attempt = Connect(bank);
    if (attempt.isOpen)
    {
        findings.back().found +=
            ": " + Shown(attempt.facts.driver) + " " + Shown(attempt.facts.driverVersion);
        findings.push_back({kBankCheck, Outcome::Ok,
                            Shown(attempt.facts.product) + " " + Shown(attempt.facts.version) +
                                " answered in " + std::to_string(attempt.milliseconds) + " ms at " +
                                host::Quoted(bank.where.shown),
                            ""});
        return true;
    }
    if (host::IsDriverMissing(attempt.state))
    {
        findings.back() = CannotLoad(attempt, parts.Value("DRIVER"));
        findings.push_back({kBankCheck, Outcome::NotLooked, "its driver cannot be loaded", ""});
        return false;
    }
    findings.push_back(CannotOpen(parts, bank, attempt));
    return false;
}

} // namespace doctor
