#pragma once

#include "host/rulebook/rule_book.h"

#include <cstddef>

namespace testing_support
{

/// A contract of any number of signatures whose every holder may sign alone and with the next one,
/// up to limits of three heights: C-9001 of partner LARGE, service CCT, client LARGE, protocol 9,
/// bank's side, order type 1. Holder 7 is "Holder 7", with a certificate of that name.
rulebook::RuleBook LargeContract(std::size_t holders);

} // namespace testing_support
