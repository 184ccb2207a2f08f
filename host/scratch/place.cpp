#include "host/scratch/place.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "database/dialect.h"
#include "database/guard_database.h"
#include "database/idle_pool.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/environment.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"
#include "support/cttime.h"
#include "support/format.h"

namespace scratch
{

namespace
{

using database::Product;

constexpr std::size_t kUserKept = 12;
// What is written to a copy has to outlive nothing.
constexpr const char* kSqliteSettings = "SyncPragma=OFF;JournalMode=MEMORY;";

// Letters and digits only: the name becomes part of statements and of a path.
std::string User()
{
    std::string user;
    for (const char* const variable : {"USER", "LOGNAME", "USERNAME"})
    {
        for (const char letter : port::Environment(variable))
        {
            const bool isCapital = letter >= 'A' && letter <= 'Z';
            if (isCapital || (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9'))
            {
                user += isCapital ? static_cast<char>(letter - 'A' + 'a') : letter;
            }
        }
        if (!user.empty())
        {
            return user.substr(0, kUserKept);
        }
    }
    return "nobody";
}

// Small letters, which no product folds, and at most 63 characters, which all of them take.
std::string NewName()
{
    const port::LocalTime now = port::ToLocalTime(CTTime::GetTickCount().GetTime());
    std::uint32_t random = 0;
    port::RandomBytes(&random, sizeof random);
    return support::FormatA("signcheck_scratch_%04d%02d%02d_%02d%02d%02d_%u_", now.year, now.month,
                            now.day, now.hour, now.minute, now.second,
                            static_cast<std::uint32_t>(GetCurrentProcessId())) +
           User() + support::FormatA("_%08x", random);
}

/// How a product makes room within itself.
struct Room
{
    Product product;
    const char* kind;
    const wchar_t* create; ///< the name stands behind it
    const wchar_t* drop;
    const wchar_t* dropEnd;
};

constexpr Room kRooms[] = {
    {Product::PostgreSql, "a PostgreSQL schema of its own", L"CREATE SCHEMA ", L"DROP SCHEMA ",
     L" CASCADE"},
    {Product::MariaDb, "a MariaDB database of its own", L"CREATE DATABASE ", L"DROP DATABASE ",
     L""},
};

const Room* RoomOf(Product product)
{
    for (const Room& each : kRooms)
    {
        if (each.product == product)
        {
            return &each;
        }
    }
    return nullptr;
}

// The connection string that leads into the room.
std::string Into(const Room& room, const std::string& connexionString, const std::string& name)
{
    const database::ConnectionString parts(connexionString);
    if (room.product == Product::MariaDb)
    {
        return parts.With("DATABASE", name);
    }
    // The driver sends these statements behind every connect.
    std::string settings = parts.Value("CONNSETTINGS");
    settings += (settings.empty() ? "" : ";") + ("SET search_path TO " + name);
    return parts.With("CONNSETTINGS", settings);
}

std::string Shown(const std::string& connexionString)
{
    return database::ConnectionString(connexionString).Masked();
}

} // namespace

Place::Place(CDatabase& source, const host::Connection& connection) : m_name(NewName())
{
    m_where.origin = connection.origin;
    if (source.GetDialect().product == Product::Sqlite)
    {
        TakeFile(connection, true);
    }
    else if (!TryWithin(source, connection))
    {
        TakeFile(connection, false);
    }
}

Place::~Place()
{
    // Waiting connections would hold the place, which forbids dropping it on some systems.
    database::EmptyIdlePool();
    if (!m_file.empty())
    {
        if (DeleteFileA(m_file.c_str()) == 0 && GetLastError() != ERROR_FILE_NOT_FOUND)
        {
            host::Warn("the copy " + host::Quoted(support::Utf8FromNarrow(m_file)) +
                       " could not be deleted. Delete it by hand.");
        }
        return;
    }
    const bool isDropped = database::GuardDatabase(
        [this]
        {
            CDatabase database;
            database.OpenEx(m_source.text.c_str(),
                            CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            database.ExecuteSQLW(m_drop.c_str());
        },
        [](const CDBException&) {}, [] {});
    if (!isDropped)
    {
        host::Warn("the copy " + m_name + " could not be dropped. Drop it by hand.");
    }
}

bool Place::TryWithin(CDatabase& source, const host::Connection& connection)
{
    const Room* const room = RoomOf(source.GetDialect().product);
    if (room == nullptr)
    {
        m_reason = "copies are not made in this product";
        return false;
    }
    const std::wstring name = support::WideFromNarrow(m_name);
    const bool isThere = database::GuardDatabase(
        [&] { source.ExecuteSQLW((room->create + name).c_str()); },
        [this](const CDBException& raised)
        { m_reason = host::Printable(support::Utf8FromNarrow(raised.GetText())); },
        [this] { m_reason = "unknown error"; });
    if (!isThere)
    {
        return false;
    }
    m_kind = room->kind;
    m_drop = room->drop + name + room->dropEnd;
    m_source = connection;
    m_where.text = Into(*room, connection.text, m_name);
    m_where.shown = Shown(m_where.text);
    return true;
}

void Place::TakeFile(const host::Connection& connection, bool sourceIsSqlite)
{
    const std::string path = port::JoinPath(port::TemporaryFolder(), m_name + ".db");
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::CreateNew))
    {
        throw host::Refusal(
            host::kCouldNotRun,
            "a copy of the rules cannot be made: " + host::Quoted(support::Utf8FromNarrow(path)) +
                " cannot be written. Give another folder for temporary files "
                "(TMPDIR, on Windows TEMP).");
    }
    m_file = path;
    m_kind = "a SQLite file of its own";
    // The driver of the source is there; its other settings may be needed to load it.
    const std::string base = sourceIsSqlite ? connection.text : "Driver=SQLite3;";
    m_where.text = database::ConnectionString(base).With("DATABASE", path) + kSqliteSettings;
    m_where.shown = Shown(m_where.text);
}

} // namespace scratch
