#include "host/rulebook/table_reader.h"

#include "host/suggestion.h"
#include "host/text.h"
#include "host/toml_kind.h"

#include <algorithm>
#include <limits>
#include <sstream>
#include <utility>

namespace rulebook
{

namespace
{

using Column = std::numeric_limits<std::int32_t>;

std::size_t LineOf(const toml::source_region& source)
{
    return source.begin.line;
}

} // namespace

TableReader::TableReader(const toml::table& table, std::string path, Places& places,
                         Problems& problems)
    : m_table(table), m_path(std::move(path)), m_places(places), m_problems(problems)
{
    m_places.Add(m_path, LineOf(m_table.source()));
}

std::optional<std::string> TableReader::Text(const char* field)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (const auto* const text = node->as_string(); text != nullptr)
    {
        return text->get();
    }
    WrongType(*node, field, "text in quotes", "\"…\"");
    return std::nullopt;
}

std::optional<std::string> TableReader::Date(const char* field)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (const auto* const date = node->as_date(); date != nullptr)
    {
        std::ostringstream text;
        text << date->get();
        return text.str();
    }
    if (const auto* const text = node->as_string(); text != nullptr)
    {
        return text->get();
    }
    WrongType(*node, field, "a date", "2027-06-30");
    return std::nullopt;
}

std::optional<std::int64_t> TableReader::Number(const char* field)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (!node->is_integer())
    {
        WrongType(*node, field, "a whole number", "9");
        return std::nullopt;
    }
    return NumberOf(*node, field);
}

std::optional<std::int64_t> TableReader::Switch(const char* field)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (const auto* const value = node->as_boolean(); value != nullptr)
    {
        return value->get() ? 1 : 0;
    }
    if (!node->is_integer())
    {
        WrongType(*node, field, "true or false", "true");
        return std::nullopt;
    }
    return NumberOf(*node, field);
}

std::optional<std::int64_t> TableReader::Word(const char* field, const NumberWord* words,
                                              std::size_t count)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (node->is_integer())
    {
        return NumberOf(*node, field);
    }
    std::vector<std::string> names;
    std::string listed;
    for (std::size_t index = 0; index < count; ++index)
    {
        const auto* const text = node->as_string();
        if (text != nullptr && text->get() == words[index].word)
        {
            return words[index].number;
        }
        names.emplace_back(words[index].word);
        listed += (index == 0 ? "\"" : ", \"") + names.back() + "\"";
    }
    const auto* const text = node->as_string();
    if (text == nullptr)
    {
        WrongType(*node, field, "a word or a whole number", "\"" + names.front() + "\"");
        return std::nullopt;
    }
    Add(LineOf(node->source()), field, host::Quoted(text->get()) + " is none of its words.",
        "Write one of " + listed + ", or a whole number." +
            host::DidYouMean(text->get(), names, ""));
    return std::nullopt;
}

std::vector<TableReader> TableReader::Tables(const char* field)
{
    std::vector<TableReader> readers;
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return readers;
    }
    const toml::array* const items = node->as_array();
    if (items == nullptr)
    {
        WrongListType(*node, field);
        return readers;
    }
    for (const toml::node& item : *items)
    {
        if (const toml::table* const table = item.as_table(); table != nullptr)
        {
            const std::string list = m_path.empty() ? field : m_path + "." + field;
            readers.emplace_back(*table, Places::Item(list, readers.size()), m_places, m_problems);
        }
        else
        {
            WrongType(item, field, "a table", "{ … }");
        }
    }
    return readers;
}

std::optional<TableReader> TableReader::Table(const char* field)
{
    const toml::node* const node = Find(field);
    if (node == nullptr)
    {
        return std::nullopt;
    }
    if (const toml::table* const table = node->as_table(); table != nullptr)
    {
        return TableReader(*table, m_path + "." + field, m_places, m_problems);
    }
    WrongType(*node, field, "a table", "{ … }");
    return std::nullopt;
}

void TableReader::Missing(const char* field, const std::string& example)
{
    // What stands there and could not be read was told already.
    const std::string outer = m_path.substr(0, m_path.rfind('.'));
    if (m_table.contains(field) || m_places.Has(outer + "." + field))
    {
        return;
    }
    Add(m_places.LineOf(m_path), field, "it is missing.",
        std::string("Add ") + field + " = " + example + ".");
}

void TableReader::Empty(const char* field)
{
    Add(m_places.LineOf(m_path + "." + field), field, "it is empty.", "Give it a value.");
}

void TableReader::RefuseOthers() const
{
    for (const auto& [key, node] : m_table)
    {
        const std::string name(key.str());
        if (std::find(m_known.begin(), m_known.end(), name) != m_known.end())
        {
            continue;
        }
        std::string listed;
        for (const std::string& known : m_known)
        {
            listed += (listed.empty() ? "" : ", ") + known;
        }
        Add(LineOf(key.source()), host::Printable(name), "the field is unknown.",
            "Its table has the fields " + listed + "." + host::DidYouMean(name, m_known, ""));
    }
}

const toml::node* TableReader::Find(const char* field)
{
    m_known.emplace_back(field);
    const toml::node* const node = m_table.get(field);
    if (node != nullptr && !m_path.empty())
    {
        m_places.Add(m_path + "." + field, LineOf(node->source()));
    }
    return node;
}

std::optional<std::int64_t> TableReader::NumberOf(const toml::node& node, const char* field)
{
    const std::int64_t number = node.as_integer()->get();
    if (number < Column::min() || number > Column::max())
    {
        Add(LineOf(node.source()), field,
            std::to_string(number) + " is beyond what its column takes.",
            "Write a whole number up to " + std::to_string(Column::max()) + ".");
        return std::nullopt;
    }
    return number;
}

void TableReader::WrongType(const toml::node& node, const char* field, const std::string& expected,
                            const std::string& example)
{
    Add(LineOf(node.source()), field,
        "expected " + expected + ", found " + host::KindOf(node) + ".",
        std::string("Write ") + field + " = " + example + ".");
}

void TableReader::WrongListType(const toml::node& node, const char* field)
{
    const toml::table* const table = node.as_table();
    if (table == nullptr || table->is_inline())
    {
        WrongType(node, field, "a list of tables", "[ { … }, { … } ]");
        return;
    }
    const std::string name = Places::FieldOf(m_path.empty() ? field : m_path + "." + field);
    Add(LineOf(node.source()), field, "[" + name + "] is one table, and a list is expected.",
        "Did you mean [[" + name + "]]? Double brackets begin each item of a list.");
}

void TableReader::Add(std::size_t line, const std::string& field, const std::string& what,
                      const std::string& remedy) const
{
    const std::string path = m_path.empty() ? field : m_path + "." + field;
    m_problems.Add({line, Places::FieldOf(path), what, remedy});
}

} // namespace rulebook
