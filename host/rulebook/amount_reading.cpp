#include "host/rulebook/amount_reading.h"

#include "host/text.h"
#include "signutils/amount_units.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace rulebook
{

namespace
{

constexpr std::size_t kGroup = 3;

bool IsDigit(char32_t letter)
{
    return letter >= U'0' && letter <= U'9';
}

bool IsDecimalMark(char32_t letter)
{
    return letter == U'.' || letter == U',';
}

bool IsGroupMark(char32_t letter)
{
    constexpr char32_t kMarks[] = {U' ', U'.', U',', U'\'', U'_', 0x00A0, 0x202F, 0x2019};
    return std::find(std::begin(kMarks), std::end(kMarks), letter) != std::end(kMarks);
}

/// Digits of an amount, before and behind its decimal mark.
struct Digits
{
    std::string whole;
    std::string fraction;
};

void TakeDigits(const std::u32string& text, std::size_t& at, std::string& digits)
{
    for (; at < text.size() && IsDigit(text[at]); ++at)
    {
        digits += static_cast<char>(text[at]);
    }
}

// "1500", "1500.50", "1500,50".
std::optional<Digits> Ungrouped(const std::u32string& text)
{
    Digits digits;
    std::size_t at = 0;
    TakeDigits(text, at, digits.whole);
    if (at > 0 && at < text.size() && IsDecimalMark(text[at]))
    {
        TakeDigits(text, ++at, digits.fraction);
    }
    const bool isWhole = at == text.size() && !digits.whole.empty();
    return isWhole ? std::make_optional(digits) : std::nullopt;
}

// "1.500", "1 500 000,50": groups of three behind the first, all set apart by the same mark.
std::optional<Digits> Grouped(const std::u32string& text)
{
    Digits digits;
    std::size_t at = 0;
    TakeDigits(text, at, digits.whole);
    if (digits.whole.empty() || digits.whole.size() > kGroup || digits.whole.front() == '0' ||
        at == text.size() || !IsGroupMark(text[at]))
    {
        return std::nullopt;
    }
    const char32_t mark = text[at];
    while (at < text.size() && text[at] == mark)
    {
        const std::size_t before = digits.whole.size();
        TakeDigits(text, ++at, digits.whole);
        if (digits.whole.size() != before + kGroup)
        {
            return std::nullopt;
        }
    }
    if (at < text.size() && IsDecimalMark(text[at]) && text[at] != mark)
    {
        TakeDigits(text, ++at, digits.fraction);
    }
    return at == text.size() ? std::make_optional(digits) : std::nullopt;
}

std::string Decimals(const Digits& digits, bool isNegative)
{
    std::string whole = digits.whole;
    whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
    std::string fraction = digits.fraction;
    fraction.erase(fraction.find_last_not_of('0') + 1);
    fraction.resize(std::max<std::size_t>(fraction.size(), 2), '0');
    return (isNegative ? "-" : "") + whole + "." + fraction;
}

// The amount as the look-up of a rule takes it out of its column.
double ReadByACheck(std::string_view text)
{
    std::string narrow;
    support::NarrowFromUtf8(text, narrow);
    std::uint16_t decimals = kUnknownDecimals;
    return UnitsToAmount(AmountTextToUnits(std::string_view(narrow), decimals));
}

// The shortest text that is this double and no other.
std::string Shown(double amount)
{
    std::array<char, 400> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), amount,
                                   std::chars_format::fixed);
    std::string text(digits.data(), end.ptr);
    const std::size_t point = text.find('.');
    text += point == std::string::npos ? "." : "";
    const std::size_t shortest = std::min(point, text.size() - 1) + 3;
    text.resize(std::max(text.size(), shortest), '0');
    return text;
}

} // namespace

AmountReading ReadingOf(std::string_view text)
{
    std::u32string letters = host::CodePoints(text);
    letters.erase(0, std::min(letters.find_first_not_of(U' '), letters.size()));
    letters.erase(letters.find_last_not_of(U' ') + 1);
    const bool isNegative = letters.starts_with(U'-');
    letters.erase(0, isNegative ? 1 : 0);

    AmountReading reading;
    for (const auto& digits : {Ungrouped(letters), Grouped(letters)})
    {
        const std::string meant = digits ? Decimals(*digits, isNegative) : std::string();
        if (!meant.empty() &&
            std::find(reading.meant.begin(), reading.meant.end(), meant) == reading.meant.end())
        {
            reading.meant.push_back(meant);
        }
    }
    const double amount = ReadByACheck(text);
    reading.read = Shown(amount);
    // As the numbers that a check compares: both texts give the same double.
    reading.isRead =
        reading.meant.size() == 1 && support::ToDouble(reading.meant.front().c_str()) == amount;
    return reading;
}

} // namespace rulebook
