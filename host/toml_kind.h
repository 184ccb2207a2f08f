#pragma once

#include <toml++/toml.h>

#include <string>

namespace host
{

/// What a value of a TOML file is, for a message: "text", "a whole number", …
std::string KindOf(const toml::node& node);

} // namespace host
