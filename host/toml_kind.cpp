#include "host/toml_kind.h"

namespace host
{

std::string KindOf(const toml::node& node)
{
    switch (node.type())
    {
    case toml::node_type::string:
        return "text";
    case toml::node_type::integer:
        return "a whole number";
    case toml::node_type::floating_point:
        return "a number with decimals";
    case toml::node_type::boolean:
        return "true or false";
    case toml::node_type::array:
        return "a list";
    case toml::node_type::table:
        return "a table";
    default:
        return "a date or time";
    }
}

} // namespace host
