#pragma once

#include "tests/testing/temporary_folder.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace testing_support
{

/// One row read back; NULL is no value.
using Row = std::vector<std::optional<std::wstring>>;

/// A real database with the project's tables, empty, for one test. SQLite in a folder of its own
/// unless SIGNUTILS_TEST_DB names another product; a second one at the same time then lies in a
/// database of its own on that server. It is read and written through ODBC directly,
/// not through the code under test.
class TestDatabase
{
public:
    TestDatabase();
    ~TestDatabase();
    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;

    const std::string& ConnexionString() const noexcept;

    /// Runs one statement; fails the running test when the database refuses.
    void Execute(const std::wstring& statement);
    /// All rows of a query, columns in order.
    std::vector<Row> Query(const std::wstring& statement);

    /// Doubles quotes and encloses: a literal in this database's own form.
    std::wstring Literal(const std::wstring& text) const;

private:
    void MoveToOwnDatabase();

    struct State;
    // Removed after the connection is closed: an open file cannot be deleted on Windows.
    TemporaryFolder m_folder;
    std::unique_ptr<State> m_state;
};

} // namespace testing_support
