#pragma once

#include "support/tsimplestring.h"

#include <cstdint>

/// Hash of the text, respecting case. The same on every platform and in every run, so it must not
/// decide over places that an attacker may fill.
std::uint32_t GetHashValue(const TSimpleString& text) noexcept;
