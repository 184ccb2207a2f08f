#include "schema/catalogue.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "schema/product_of.h"
#include "schema/scripts.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace schema
{

namespace
{

/// The queries of one product; {T} and {R} stand for table and right, ANSWER is what is read.
struct Catalogue
{
    Product product;
    const char* columns;
    const char* indexes;
    const char* right; ///< null where there are no users
};

// MariaDB shows with each column what the current user may do, roles included.
constexpr Catalogue kCatalogues[] = {
    {Product::SQLite, "SELECT name AS ANSWER FROM pragma_table_info('{T}')",
     "SELECT name AS ANSWER FROM sqlite_master WHERE type = 'index'", nullptr},
    {Product::PostgreSQL,
     "SELECT attname AS ANSWER FROM pg_catalog.pg_attribute WHERE attrelid = to_regclass('{T}') "
     "AND attnum > 0 AND NOT attisdropped",
     "SELECT indexname AS ANSWER FROM pg_catalog.pg_indexes WHERE schemaname = current_schema()",
     "SELECT CASE WHEN has_table_privilege('{T}', '{R}') THEN 1 ELSE 0 END AS ANSWER"},
    {Product::MariaDB,
     "SELECT COLUMN_NAME AS ANSWER FROM information_schema.COLUMNS "
     "WHERE TABLE_SCHEMA = DATABASE() AND UPPER(TABLE_NAME) = '{T}'",
     "SELECT DISTINCT INDEX_NAME AS ANSWER FROM information_schema.STATISTICS "
     "WHERE TABLE_SCHEMA = DATABASE()",
     "SELECT COALESCE(MIN(FIND_IN_SET(LOWER('{R}'), PRIVILEGES) > 0), 0) AS ANSWER "
     "FROM information_schema.COLUMNS "
     "WHERE TABLE_SCHEMA = DATABASE() AND UPPER(TABLE_NAME) = '{T}'"},
    {Product::SqlServer,
     "SELECT COLUMN_NAME AS ANSWER FROM INFORMATION_SCHEMA.COLUMNS "
     "WHERE TABLE_SCHEMA = SCHEMA_NAME() AND TABLE_NAME = '{T}'",
     "SELECT name AS ANSWER FROM sys.indexes WHERE name IS NOT NULL",
     "SELECT HAS_PERMS_BY_NAME('{T}', 'OBJECT', '{R}') AS ANSWER"},
};

const Catalogue& CatalogueOf(CDatabase& database)
{
    const Product product = ProductOf(database);
    return *std::find_if(std::begin(kCatalogues), std::end(kCatalogues),
                         [product](const Catalogue& each) { return each.product == product; });
}

std::string Narrow(const std::wstring& ascii)
{
    std::string text;
    std::transform(ascii.begin(), ascii.end(), std::back_inserter(text),
                   [](wchar_t letter) { return static_cast<char>(letter); });
    return text;
}

// Names of tables and rights are our own, so that no quote can stand in them.
std::string With(std::string query, const std::string& place, const std::string& value)
{
    const std::size_t at = query.find(place);
    return at == std::string::npos ? query : query.replace(at, place.size(), value);
}

std::vector<std::string> Answers(CDatabase& database, const std::string& query)
{
    std::vector<std::string> answers;
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, std::wstring(query.begin(), query.end()).c_str(), 0);
    for (; !rows.IsEOF(); rows.MoveNext())
    {
        CTString answer;
        rows.GetFieldValue("ANSWER", answer);
        answers.push_back(CapitalName(answer.SafeGetString()));
    }
    rows.Close();
    return answers;
}

std::vector<std::string> StatementsOf(CDatabase& database)
{
    std::vector<std::string> statements;
    for (const Script& script : UpgradeScripts(ProductOf(database)))
    {
        for (const std::wstring& statement : SplitStatements(script.text))
        {
            statements.push_back(Narrow(statement));
        }
    }
    return statements;
}

std::string OneLine(const std::string& statement)
{
    std::istringstream words(statement);
    std::string line;
    for (std::string word; words >> word;)
    {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

} // namespace

std::vector<std::string> ColumnsIn(CDatabase& database, const std::string& table)
{
    return Answers(database, With(CatalogueOf(database).columns, "{T}", table));
}

std::vector<std::string> IndexNames(CDatabase& database)
{
    return Answers(database, CatalogueOf(database).indexes);
}

std::optional<bool> HasRight(CDatabase& database, const std::string& table,
                             const std::string& right)
{
    const char* const query = CatalogueOf(database).right;
    if (query == nullptr)
    {
        return std::nullopt;
    }
    const auto answers = Answers(database, With(With(query, "{T}", table), "{R}", right));
    return answers.size() == 1 && answers.front() == "1";
}

std::vector<DeclaredIndex> DeclaredIndexes(CDatabase& database)
{
    std::vector<DeclaredIndex> indexes;
    for (const std::string& statement : StatementsOf(database))
    {
        const std::size_t create = statement.find("CREATE INDEX ");
        if (create == std::string::npos)
        {
            continue;
        }
        DeclaredIndex index;
        index.statement = OneLine(statement.substr(create));
        std::istringstream words(With(index.statement, "IF NOT EXISTS ", ""));
        std::string word;
        words >> word >> word >> index.name >> word >> index.table;
        indexes.push_back(index);
    }
    return indexes;
}

std::string DeclarationOf(CDatabase& database, const std::string& table, const std::string& column)
{
    for (const std::string& statement : StatementsOf(database))
    {
        std::istringstream lines(statement);
        std::string line;
        bool isOfTable = false;
        while (std::getline(lines, line))
        {
            if (line.find("CREATE TABLE ") != std::string::npos)
            {
                isOfTable = OneLine(line).ends_with(" " + table + " (");
                continue;
            }
            std::istringstream words(line);
            std::string name;
            words >> name;
            if (isOfTable && name == column)
            {
                const std::string declaration =
                    OneLine(line.substr(line.find(column) + column.size()));
                return declaration.ends_with(',') ? declaration.substr(0, declaration.size() - 1)
                                                  : declaration;
            }
        }
    }
    return {};
}

} // namespace schema
