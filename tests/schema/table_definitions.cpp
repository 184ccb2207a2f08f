#include "tests/schema/table_definitions.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace schema_tests
{

namespace
{

Table ReadTable(const std::wstring& body)
{
    static const std::wregex line(LR"(^ *(\w+) +(\w+(?: PRECISION)?)(?:\((\w+)\))? *(.*?),?$)");
    Table table;
    std::wistringstream lines(body);
    for (std::wstring text; std::getline(lines, text);)
    {
        std::wsmatch parts;
        if (!std::regex_match(text, parts, line))
        {
            ADD_FAILURE() << "no column: " << std::string(text.begin(), text.end());
        }
        else if (parts[2] != L"AS")
        {
            table.columns.push_back(Column{parts[1], parts[2], parts[3], parts[4]});
        }
    }
    return table;
}

} // namespace

std::string Narrow(const std::wstring& text)
{
    return std::string(text.begin(), text.end());
}

const Column* Table::Find(const std::wstring& name) const
{
    for (const Column& column : columns)
    {
        if (column.name == name)
        {
            return &column;
        }
    }
    return nullptr;
}

std::vector<std::wstring> Table::ColumnNames() const
{
    std::vector<std::wstring> names;
    for (const Column& column : columns)
    {
        names.push_back(column.name);
    }
    return names;
}

std::map<std::wstring, Table> ReadTables(schema::Product product)
{
    static const std::wregex head(LR"(CREATE TABLE (?:IF NOT EXISTS )?(\w+) \(\n)");
    std::map<std::wstring, Table> tables;
    for (const schema::Script& script : schema::UpgradeScripts(product))
    {
        for (const std::wstring& statement : schema::SplitStatements(script.text))
        {
            std::wsmatch found;
            if (!std::regex_search(statement, found, head))
            {
                continue;
            }
            const std::wstring body = found.suffix();
            const std::size_t end = body.find(L"\n)");
            Table table = ReadTable(body.substr(0, end));
            table.options = body.substr(end + 2);
            tables[found[1]] = std::move(table);
        }
    }
    return tables;
}

} // namespace schema_tests
