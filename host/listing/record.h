#pragma once

#include "host/table.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace listing
{

using Json = nlohmann::ordered_json;

/// One row for people: the cells of its line, and what stands in lines of its own below.
struct TableRow
{
    std::vector<std::string> cells;
    std::vector<std::string> notes; ///< wrapped; empty ones are left out
    std::vector<std::string> below = {}; ///< lines of a text that stay as they are
};

/// One row in both of its forms; only the one that the output format needs is made.
struct Record
{
    std::function<std::vector<Json>()>
        values; ///< of the fields, in their order; no arrays, no objects
    std::function<TableRow()> shown;
};

/// What is the same for all rows of one listing.
struct Shape
{
    std::string listName;            ///< of the array in JSON: "rows"
    std::vector<std::string> fields; ///< names in JSON, and the columns of CSV
    std::vector<std::pair<std::string, host::Table::Align>> columns; ///< of the table
    std::string whenEmpty;                                           ///< a sentence
    std::vector<std::pair<std::string, std::string>>
        about; ///< members of the JSON object before the list
};

/// Fields are a table of names and functions: { const char* name; Json (*value)(…); }.
template <typename Field, std::size_t count>
std::vector<std::string> NamesOf(const Field (&fields)[count])
{
    std::vector<std::string> names;
    for (const Field& field : fields)
    {
        names.emplace_back(field.name);
    }
    return names;
}

template <typename Field, std::size_t count, typename... Sources>
std::vector<Json> ValuesOf(const Field (&fields)[count], const Sources&... sources)
{
    std::vector<Json> values;
    values.reserve(count);
    for (const Field& field : fields)
    {
        values.push_back(field.value(sources...));
    }
    return values;
}

} // namespace listing
