#pragma once

#include "database/statement_scanner.h"

#include <string_view>

namespace database
{

enum class Product
{
    Sqlite,
    PostgreSql,
    MariaDb, ///< and MySQL
    SqlServer,
    Other,
};

/// How text crosses to the driver.
enum class TextCrossing
{
    Utf16, ///< the wide calls
    Utf8,  ///< the narrow calls, for a driver without wide entry points of its own
};

/// What differs between the database products.
struct Dialect
{
    Product product;
    const char* name; ///< for messages; the driver's own name of the product begins with it
    TextCrossing crossing;
    /// The driver fills bound columns well and gives a value again that did not fit. Elsewhere each
    /// value is asked for on its own.
    bool bindsColumns;
    LexicalRules lexicon;
    /// Run once on a new connection, so that literals mean what the scanner takes them for; null
    /// where there is nothing to set.
    const wchar_t* connectStatement;
    /// Run on an idle connection before it is used again; null where no server can have gone away.
    const wchar_t* probeStatement;
};

/// The dialect of the product whose name the driver gives.
const Dialect& DialectOf(std::string_view productName) noexcept;

/// How statements and error texts cross on a connection. `driverFile` is the driver's file name as
/// the driver gives it.
TextCrossing StatementCrossing(const Dialect& dialect, std::string_view driverFile) noexcept;

/// How a connection string crosses, when the product cannot be asked yet. `driver` is its DRIVER
/// value, empty when it names a data source.
TextCrossing ConnectCrossing(std::string_view connexionString, std::string_view driver) noexcept;

} // namespace database
