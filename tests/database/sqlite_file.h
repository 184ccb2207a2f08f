#pragma once

#include "database/cdatabase.h"
#include "database/cdbexception.h"
#include "database/crecordset.h"
#include "tests/testing/temporary_folder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace database_tests
{

/// A new SQLite file, empty, removed at the end of the scope.
class SqliteFile
{
public:
    SqliteFile();
    ~SqliteFile();
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    std::string Path() const { return m_folder.Path("test.db"); }
    const std::string& ConnexionString() const noexcept { return m_connexionString; }

private:
    testing_support::TemporaryFolder m_folder;
    std::string m_connexionString;
};

void Open(CDatabase& database, const std::string& connexionString);

/// What a raised CDBException said; it is deleted.
struct Failure
{
    std::int32_t returnCode = 0;
    std::string state;
    std::int32_t nativeError = 0;
    std::string first;
    std::string second;
    std::string text;
};

template <typename Body>
std::optional<Failure> FailureOf(Body&& body)
{
    try
    {
        body();
        return std::nullopt;
    }
    catch (CDBException* raised)
    {
        Failure failure{raised->GetReturnCode(),
                        raised->GetState(),
                        raised->GetNativeError(),
                        raised->GetFirstText().SafeGetString(),
                        raised->GetSecondText().SafeGetString(),
                        raised->GetText()};
        raised->Delete();
        return failure;
    }
}

/// A narrow value of the first row of a query.
std::string ReadOne(CDatabase& database, const std::wstring& query, const char* column);
/// The same, wide.
std::wstring ReadOneWide(CDatabase& database, const std::wstring& query, const char* column);
/// A column's narrow values of all rows.
std::vector<std::string> ReadAll(CDatabase& database, const std::wstring& query,
                                 const char* column);

} // namespace database_tests
