#include "schema/product_of.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "schema/installer.h"

#include <algorithm>
#include <cctype>

namespace schema
{

Product ProductOf(CDatabase& database)
{
    const char* name = database.GetDialect().name;
    const std::optional<Product> product = FindProduct(name);
    if (!product)
    {
        throw SchemaError(std::string("there are no table definitions for the database product '") +
                          name + "'; use SQLite, PostgreSQL, MariaDB or SQL Server");
    }
    return *product;
}

std::string CapitalName(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return name;
}

} // namespace schema
