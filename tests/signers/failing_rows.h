#pragma once

#include "tests/testing/test_database.h"

#include <initializer_list>
#include <string>

namespace testing_support
{

/// Whether the product under test is SQLite, which can be made to fail while it reads a chosen row
/// and stores texts beyond their column's length.
bool RunsOnSqlite();

/// Puts a view in the place of a table, whose rows that satisfy `condition` raise an error when
/// `failing` is read. `kept` are the other columns.
void FailOnRead(TestDatabase& database, const std::wstring& table,
                std::initializer_list<const wchar_t*> kept, const std::wstring& failing,
                const std::wstring& condition);

/// What a connection string needs so that rows are read one by one; the SQLite driver otherwise
/// reads them all when the statement runs.
inline constexpr char kRowByRow[] = "StepAPI=1;";

} // namespace testing_support
