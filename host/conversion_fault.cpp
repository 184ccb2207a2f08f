#include "host/conversion_fault.h"

#include "support/numbers.h"

#include <string_view>

namespace host
{

namespace
{

// The engine's number ends the text: "… n°121 ".
constexpr std::string_view kBeforeNumber = " n\xB0";
// Of the engine's last error: not this format, malformed, hostile.
constexpr long long kFirstOfOrder = 120;
constexpr long long kLastOfOrder = 122;
// The library keeps no more of a text; what is that long has lost its number.
constexpr std::size_t kLongestText = 255;
// Only what cannot be read or written begins like that.
constexpr std::string_view kMachineTrouble = "Cannot ";

} // namespace

bool IsOrdersFault(const std::string& told)
{
    if (told.size() >= kLongestText)
    {
        return !told.starts_with(kMachineTrouble);
    }
    const std::size_t mark = told.rfind(kBeforeNumber);
    if (mark == std::string::npos)
    {
        return false;
    }
    const long long number = support::ToInt64(told.c_str() + mark + kBeforeNumber.size());
    return number >= kFirstOfOrder && number <= kLastOfOrder;
}

} // namespace host
