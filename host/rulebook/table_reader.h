#pragma once

#include "host/rulebook/rule_file.h"
#include "host/rulebook/rule_file_fields.h"

#include <toml++/toml.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace rulebook
{

/// Reads the fields of one table of a rule file. Every field that is asked for is known; the others
/// become problems at the end.
class TableReader
{
public:
    TableReader(const toml::table& table, std::string path, Places& places, Problems& problems);

    std::optional<std::string> Text(const char* field);
    /// A date, or a text that says one.
    std::optional<std::string> Date(const char* field);
    std::optional<std::int64_t> Number(const char* field);
    /// true, false or a number.
    std::optional<std::int64_t> Switch(const char* field);
    /// One of the words, or a number.
    template <std::size_t Count>
    std::optional<std::int64_t> Word(const char* field, const NumberWord (&words)[Count])
    {
        return Word(field, words, Count);
    }

    /// The tables of a list; what else stands in it becomes a problem.
    std::vector<TableReader> Tables(const char* field);
    /// A table within this one.
    std::optional<TableReader> Table(const char* field);

    /// A problem for a field that should be there; gives nothing a value.
    void Missing(const char* field, const std::string& example);

    /// A problem for a text that must say something.
    void Empty(const char* field);

    /// Problems for the fields that nobody asked for.
    void RefuseOthers() const;

    const std::string& Path() const noexcept { return m_path; }

private:
    std::optional<std::int64_t> Word(const char* field, const NumberWord* words, std::size_t count);
    const toml::node* Find(const char* field);
    std::optional<std::int64_t> NumberOf(const toml::node& node, const char* field);
    void WrongType(const toml::node& node, const char* field, const std::string& expected,
                   const std::string& example);
    /// A list of tables is expected. Single brackets in place of double ones get a hint.
    void WrongListType(const toml::node& node, const char* field);
    void Add(std::size_t line, const std::string& field, const std::string& what,
             const std::string& remedy) const;

    const toml::table& m_table;
    std::string m_path;
    Places& m_places;
    Problems& m_problems;
    std::vector<std::string> m_known;
};

} // namespace rulebook
