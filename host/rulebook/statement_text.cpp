#include "host/rulebook/statement_text.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/query.h"

namespace rulebook
{

std::string Literal(const CDatabase& database, const std::string& value)
{
    // SQL Server keeps letters beyond its code page in N'…' alone. PostgreSQL takes N'…' for text
    // of a fixed length and drops the blanks at its end.
    const bool isNational = database.GetDialect().product == database::Product::SqlServer;
    return (isNational ? "N" : "") + host::Literal(value);
}

std::string Literal(const CDatabase& database, const std::optional<std::string>& value)
{
    return value ? Literal(database, *value) : "NULL";
}

std::string Literal(const std::optional<std::int64_t>& value)
{
    return value ? std::to_string(*value) : "NULL";
}

std::string InReadingOrder(const CDatabase& database)
{
    switch (database.GetDialect().product)
    {
    case database::Product::Sqlite:
        return " ORDER BY rowid";
    case database::Product::PostgreSql:
        // A scan of a large table may begin in the middle, where another one is under way.
        return " ORDER BY ctid";
    default:
        return {};
    }
}

} // namespace rulebook
