#include "tests/signers/failing_rows.h"

#include <cstdlib>

namespace testing_support
{

bool RunsOnSqlite()
{
    return std::getenv("SIGNUTILS_TEST_DB") == nullptr;
}

void FailOnRead(TestDatabase& database, const std::wstring& table,
                std::initializer_list<const wchar_t*> kept, const std::wstring& failing,
                const std::wstring& condition)
{
    const std::wstring base = table + L"_BASE";
    database.Execute(L"ALTER TABLE " + table + L" RENAME TO " + base);
    std::wstring columns;
    for (const wchar_t* const column : kept)
    {
        columns += column;
        columns += L", ";
    }
    // The smallest integer has no absolute value: SQLite raises "integer overflow".
    database.Execute(L"CREATE VIEW " + table + L" AS SELECT " + columns + L"CASE WHEN " +
                     condition + L" THEN abs(-9223372036854775807 - (" + condition + L")) ELSE " +
                     failing + L" END AS " + failing + L" FROM " + base);
}

} // namespace testing_support
