#pragma once

#include "support/tsimplestring.h"

/// 1 when the whole text matches the pattern, without regard to case, else 0. `*` stands for any
/// number of characters, none included, `?` for exactly one. A null pattern matches nothing.
int GetFilterResult(const char* pattern, const TSimpleString& text) noexcept;
