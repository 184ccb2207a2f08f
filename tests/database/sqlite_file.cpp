#include "tests/database/sqlite_file.h"

#include "database/idle_pool.h"

namespace database_tests
{

// Nothing written here has to outlive a power cut, so no write waits for the disk.
SqliteFile::SqliteFile()
    : m_connexionString("DRIVER={SQLite3};Database=" + Path() + ";SyncPragma=OFF")
{
}

// An idle connection would keep the file open, and Windows from removing it.
SqliteFile::~SqliteFile()
{
    database::EmptyIdlePool();
}

void Open(CDatabase& database, const std::string& connexionString)
{
    database.OpenEx(connexionString.c_str(), CDatabase::kNoOdbcDialog | CDatabase::kUseCursorLib);
}

std::string ReadOne(CDatabase& database, const std::wstring& query, const char* column)
{
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, query.c_str(), 0);
    CTString value;
    rows.GetFieldValue(column, value);
    return {value.SafeGetString(), value.GetLength()};
}

std::wstring ReadOneWide(CDatabase& database, const std::wstring& query, const char* column)
{
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, query.c_str(), 0);
    TSimpleStringW value;
    rows.GetFieldValue(column, value);
    return {value.SafeGetString(), value.GetLength()};
}

std::vector<std::string> ReadAll(CDatabase& database, const std::wstring& query, const char* column)
{
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, query.c_str(), 0);
    std::vector<std::string> values;
    while (!rows.IsEOF())
    {
        CTString value;
        rows.GetFieldValue(column, value);
        values.emplace_back(value.SafeGetString(), value.GetLength());
        rows.MoveNext();
    }
    return values;
}

} // namespace database_tests
