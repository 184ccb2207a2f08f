#include "host/listing/text_filter.h"

#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "support/casefold.h"

#include <algorithm>

namespace listing
{

std::u32string LowerCased(std::string_view utf8)
{
    std::u32string lower = host::CodePoints(utf8);
    std::transform(lower.begin(), lower.end(), lower.begin(), support::LowerCase);
    return lower;
}

TextFilter::TextFilter(const host::OptionValues& values, const std::string& option)
{
    const host::OptionValue* const value = values.Find(option);
    if (value == nullptr)
    {
        return;
    }
    host::RefuseUnreadable(*value);
    if (value->text.empty())
    {
        throw host::UsageRefusal(value->origin + ": the value is empty. Give a part of the text "
                                                 "to look for, or leave the option out.");
    }
    m_part = LowerCased(value->text);
}

bool TextFilter::Fits(std::string_view utf8) const
{
    return m_part.empty() || LowerCased(utf8).find(m_part) != std::u32string::npos;
}

} // namespace listing
