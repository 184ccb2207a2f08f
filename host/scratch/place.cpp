#include "host/scratch/place.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "database/dialect.h"
#include "database/guard_database.h"
#include "database/idle_pool.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/scratch/name.h"
#include "host/scratch/room.h"
#include "host/text.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"

namespace scratch
{

namespace
{

using database::Product;

// What is written to a copy has to outlive nothing.
constexpr const char* kSqliteSettings = "SyncPragma=OFF;JournalMode=MEMORY;";

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
    const bool isThere = database::GuardDatabase(
        [&] { source.ExecuteSQLW((room->create + support::WideFromNarrow(m_name)).c_str()); },
        [this](const CDBException& raised)
        { m_reason = host::Printable(support::Utf8FromNarrow(raised.GetText())); },
        [this] { m_reason = "unknown error"; });
    if (!isThere)
    {
        return false;
    }
    m_kind = std::string("a ") + room->kind + " of its own";
    m_drop = DropOf(*room, m_name);
    m_source = connection;
    m_where.text = Into(*room, connection.text, m_name);
    m_where.shown = Shown(m_where.text);
    return true;
}

void Place::TakeFile(const host::Connection& connection, bool sourceIsSqlite)
{
    const std::string path = port::JoinPath(port::TemporaryFolder(), m_name + kFileEnding);
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
