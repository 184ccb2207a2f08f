#include "engine/mt_chain.h"

#include "engine/fixed_records.h"

#include <charconv>

namespace engine
{

namespace
{

// At most five digits; 0 is none.
unsigned IndexOf(std::string_view digits)
{
    constexpr std::size_t kLongest = 5;
    unsigned index = 0;
    if (digits.size() <= kLongest && IsDigits(digits))
    {
        std::from_chars(digits.data(), digits.data() + digits.size(), index);
    }
    return index;
}

} // namespace

MtChain::Result MtChain::Take(std::string_view field)
{
    const std::size_t slash = field.find('/');
    const unsigned index = IndexOf(field.substr(0, slash));
    const unsigned total = slash == std::string_view::npos ? 0U : IndexOf(field.substr(slash + 1U));
    if (index == 0 || index > total)
    {
        return Result::Malformed;
    }
    const bool follows =
        index == 1 ? !IsOpen() : IsOpen() && index == m_index + 1U && total == m_total;
    m_index = index;
    m_total = total;
    return follows ? Result::Follows : Result::OutOfOrder;
}

std::string MtChain::Position() const
{
    return std::to_string(m_index) + "/" + std::to_string(m_total);
}

} // namespace engine
