#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace batch
{

/// What a name in a folder of orders stands for.
enum class NameKind
{
    Order,
    WorkFile, ///< of a conversion, or a lock: never an order
    Other,    ///< hidden, terms of an order, or not yet whole
};

NameKind KindOfName(std::string_view name);

/// The order whose work file or lock has this name; nothing when it is no such name.
std::optional<std::string> OrderOfWorkFile(std::string_view name);

/// The terms of one order lie beside it under its name with this ending.
inline constexpr const char* kTermsEnding = ".terms";

} // namespace batch
