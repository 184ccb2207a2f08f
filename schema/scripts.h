#pragma once

#include <optional>
#include <string>
#include <vector>

namespace schema
{

/// The database products that have table definitions.
enum class Product
{
    SQLite,
    PostgreSQL,
    MariaDB,
    SqlServer,
};

/// The product behind what a driver reports as the name of its database system.
std::optional<Product> FindProduct(const char* reportedName);

/// One numbered script; numbers start at 1 and have no gap. The texts are built into the library.
struct Script
{
    int number;
    std::wstring name; ///< of the file, without its ending
    std::wstring text;
};

/// The scripts of a product, in their order.
std::vector<Script> UpgradeScripts(Product product);

/// The statements of a script, without their semicolons and comment lines. A statement ends with a
/// semicolon at the end of a line, a comment stands on a line of its own.
std::vector<std::wstring> SplitStatements(const std::wstring& text);

/// The tables that the scripts create, in the order of their creation.
const std::vector<std::string>& TableNames();

} // namespace schema
