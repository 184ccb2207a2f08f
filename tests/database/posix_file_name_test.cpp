#include "tests/database/sqlite_file.h"

#include <gtest/gtest.h>

#include <filesystem>

// Behind a Windows manager that hands on to another system's, the letters of the file's name are
// converted on the way.

namespace
{

using database_tests::Open;
using database_tests::SqliteFile;

TEST(PosixFileName, MayHaveAccents)
{
    const SqliteFile file;
    const std::filesystem::path folder = std::filesystem::path(file.Path()).parent_path();
    CDatabase database;
    Open(database, "DRIVER={SQLite3};Database=" + folder.string() + "/R\xE9gles \x80.db");
    database.ExecuteSQLW(L"CREATE TABLE T (A INTEGER)");
    database.Close();

    EXPECT_TRUE(std::filesystem::exists(folder / std::filesystem::path(u8"R\u00E9gles \u20AC.db")));
}

} // namespace
