#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Orders of a file, counted by a plain reading of its format's rules: the converters must write
// each of them, whatever is wrong round it.

namespace fuzz
{

/// What records begin with, that of orders first.
using RecordCodes = std::vector<std::string>;

/// Records of `length` characters that are orders.
std::uint64_t CountRecords(std::string_view bytes, std::size_t length, const RecordCodes& codes);

/// Fields 21, and fields 32B of no order.
std::uint64_t CountMtOrders(std::string_view bytes);

/// Elements `order` of the groups of every message element, which is `message` or begins with
/// `oldMessage`.
std::uint64_t CountPainOrders(std::string_view bytes, const std::string& message,
                              const std::string& oldMessage, const std::string& order);

} // namespace fuzz
