#include "schema/scripts.h"

#include "schema/embedded_files.h"

#include <cstring>
#include <sstream>

namespace schema
{

namespace
{

struct ProductName
{
    const char* reported; ///< the beginning of what the driver reports
    Product product;
};

constexpr ProductName kProductNames[] = {
    {"SQLite", Product::SQLite},
    {"PostgreSQL", Product::PostgreSQL},
    {"MariaDB", Product::MariaDB},
    {"MySQL", Product::MariaDB},
    {"Microsoft SQL Server", Product::SqlServer},
};

const char* FolderOf(Product product)
{
    switch (product)
    {
    case Product::SQLite:
        return "sqlite";
    case Product::PostgreSQL:
        return "postgresql";
    case Product::MariaDB:
        return "mariadb";
    case Product::SqlServer:
        return "sqlserver";
    }
    return "";
}

constexpr const wchar_t* kBlanks = L" \t\r";

void AppendLine(std::wstring& statement, const std::wstring& line)
{
    if (!statement.empty())
    {
        statement += L'\n';
    }
    statement += line;
}

} // namespace

std::optional<Product> FindProduct(const char* reportedName)
{
    for (const ProductName& name : kProductNames)
    {
        if (std::strncmp(reportedName, name.reported, std::strlen(name.reported)) == 0)
        {
            return name.product;
        }
    }
    return std::nullopt;
}

std::vector<Script> UpgradeScripts(Product product)
{
    std::vector<Script> scripts;
    for (std::size_t index = 0; index < kEmbeddedFileCount; ++index)
    {
        const EmbeddedFile& file = kEmbeddedFiles[index];
        if (std::strcmp(file.folder, FolderOf(product)) == 0)
        {
            const int number = static_cast<int>(scripts.size()) + 1;
            scripts.push_back(Script{number, file.name, file.text});
        }
    }
    return scripts;
}

std::vector<std::wstring> SplitStatements(const std::wstring& text)
{
    std::vector<std::wstring> statements;
    std::wistringstream lines(text);
    std::wstring statement;
    for (std::wstring line; std::getline(lines, line);)
    {
        const std::size_t first = line.find_first_not_of(kBlanks);
        if (first == std::wstring::npos || line.compare(first, 2, L"--") == 0)
        {
            continue;
        }
        const std::size_t last = line.find_last_not_of(kBlanks);
        const bool ends = line[last] == L';';
        AppendLine(statement, line.substr(0, ends ? last : last + 1));
        if (ends)
        {
            statements.push_back(statement);
            statement.clear();
        }
    }
    if (!statement.empty())
    {
        statements.push_back(statement);
    }
    return statements;
}

const std::vector<std::string>& TableNames()
{
    static const std::vector<std::string> names = {
        "SSR_VERSION",     "SSR_HOLDER",       "SSR_HOLDERID",  "SSR_CONTRACT",
        "SSR_CONTRACTCUR", "SSR_CONTRACTRULE", "HST_SIGNRULES", "EVT_JOURNAL",
    };
    return names;
}

} // namespace schema
