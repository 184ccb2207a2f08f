#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace services
{

/// "access denied (system error 5)"; the number alone where there are no words for it.
std::string SystemErrorText(std::uint32_t systemCode);

/// Control characters become '?', so that a text stays one line wherever it is shown.
std::string OneLine(std::string_view text);

} // namespace services
