#include "signutils/amount_units.h"
#include "tests/fuzz/target.h"
#include "tests/signutils/literal_amounts.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// The four amount conversions beside their literal steps. An input is a number of
// decimals, a line feed and an amount text, whose first bytes also serve as a double and as units.

namespace
{

template <typename Value>
Value FromBytes(std::string_view bytes)
{
    Value value{};
    std::string whole(bytes.substr(0, sizeof value));
    whole.resize(sizeof value);
    std::memcpy(&value, whole.data(), sizeof value);
    return value;
}

// As a C string and as a text in a row, where no NUL need stand behind it.
void CheckText(std::string_view text, std::uint16_t decimals)
{
    const std::string cut(text.substr(0, text.find('\0')));
    std::uint16_t expectedDecimals = decimals;
    const std::int64_t expected = literal::TextToUnits(cut, expectedDecimals);
    std::uint16_t viewDecimals = decimals;
    fuzz::Require(AmountTextToUnits(text, viewDecimals) == expected, "other units of a view");
    fuzz::Require(viewDecimals == expectedDecimals, "other decimals of a view");
    fuzz::Require(AmountTextToUnits(cut.c_str(), decimals) == expected, "other units");
    fuzz::Require(decimals == expectedDecimals, "other decimals");
}

void CheckUnits(std::int64_t units)
{
    const std::string text = UnitsToAmountText(units).SafeGetString();
    fuzz::Require(text == literal::UnitsToText(units), "another text");
    fuzz::Require(UnitsToAmount(units) == literal::UnitsToAmount(units), "another amount");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::View(data, size);
    const std::size_t end = bytes.find('\n');
    const std::string decimals(bytes.substr(0, end));
    const std::string_view rest =
        end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1U);
    const std::string text(rest.substr(0, rest.find('\0')));

    CheckText(rest, static_cast<std::uint16_t>(std::strtoul(decimals.c_str(), nullptr, 10)));
    CheckUnits(FromBytes<std::int64_t>(rest));
    CheckUnits(literal::Atoi64(text));
    for (const double value : {FromBytes<double>(rest), std::atof(text.c_str())})
    {
        fuzz::Require(AmountToUnits(value) == literal::AmountToUnits(value),
                      "other units of a double");
    }
    return 0;
}
