#include "host/amount_columns.h"

#include "database/cdatabase.h"
#include "database/dialect.h"

namespace host
{

namespace
{

// Whatever 15 digits tell stays as the driver writes it, and so does what is no double there.
std::string WithEveryDigit(const std::string& column)
{
    return "CASE WHEN typeof(" + column + ") = 'real' AND CAST(printf('%!.15g', " + column +
           ") AS REAL) <> " + column + " THEN printf('%!.17g', " + column + ") ELSE " + column +
           " END AS " + column;
}

} // namespace

std::string SelectedColumns(CDatabase& database, const std::vector<std::string>& columns)
{
    const bool isSqlite = database.GetDialect().product == database::Product::Sqlite;
    std::string selected;
    for (const std::string& column : columns)
    {
        const bool isAmount = column == "TOTAL" || column == "MAXORDER";
        selected += (selected.empty() ? "" : ", ") +
                    (isSqlite && isAmount ? WithEveryDigit(column) : column);
    }
    return selected;
}

} // namespace host
