// What do the amount conversions cost beside the least that the same work can cost? The texts are
// amounts as the work files have them, of 1 to 8 digits before the point and two behind it. Floors:
// std::from_chars, which rounds to a double and keeps no decimals; digits written by hand without
// regard to sign or size; a division; the digits of a double, which its units are made of. strtod
// and snprintf, which hosts would use, run beside them.

#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "signutils/amount_units.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr std::size_t kAmounts = 1'000'000;
constexpr double kUnitsPerMain = 1e7;
constexpr std::uint64_t kUnitsPerCent = 100'000;
constexpr std::uint64_t kMainUnits = 10'000'000;

struct Amounts
{
    std::vector<std::string> texts;
    std::vector<std::int64_t> units;
    std::vector<double> doubles;
    std::uint64_t bytes = 0;
};

Amounts Generate()
{
    Amounts amounts;
    std::mt19937_64 random(1);
    for (std::size_t i = 0; i < kAmounts; ++i)
    {
        const unsigned digits = 3U + static_cast<unsigned>(random() % 8U);
        const std::uint64_t cents = random() % static_cast<std::uint64_t>(std::pow(10.0, digits));
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%llu.%02llu",
                      static_cast<unsigned long long>(cents / 100U),
                      static_cast<unsigned long long>(cents % 100U));
        amounts.texts.emplace_back(text.data());
        amounts.bytes += amounts.texts.back().size();
        amounts.units.push_back(static_cast<std::int64_t>(cents * kUnitsPerCent));
        amounts.doubles.push_back(static_cast<double>(cents) / 100.0);
    }
    return amounts;
}

double FromChars(const std::string& text)
{
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::int64_t ToUnits(const std::string& text)
{
    std::uint16_t decimals = kUnknownDecimals;
    return AmountTextToUnits(text.c_str(), decimals);
}

using Buffer = std::array<char, kAmountTextSize>;

// Positive amounts only.
std::string_view WriteByHand(std::int64_t units, Buffer& buffer)
{
    char* at = buffer.data() + buffer.size();
    std::uint64_t rest = static_cast<std::uint64_t>(units) / 10U;
    for (int i = 0; i < 6; ++i, rest /= 10U)
    {
        *--at = static_cast<char>('0' + rest % 10U);
    }
    *--at = '.';
    do
    {
        *--at = static_cast<char>('0' + rest % 10U);
        rest /= 10U;
    } while (rest > 0);
    return {at, static_cast<std::size_t>(buffer.data() + buffer.size() - at)};
}

std::string_view WriteWithPrintf(std::int64_t units, Buffer& buffer)
{
    const auto number = static_cast<std::uint64_t>(units);
    const int size = std::snprintf(buffer.data(), buffer.size(), "%llu.%06llu",
                                   static_cast<unsigned long long>(number / kMainUnits),
                                   static_cast<unsigned long long>(number % kMainUnits / 10U));
    return {buffer.data(), static_cast<std::size_t>(size)};
}

double DivideUnits(std::int64_t units)
{
    return static_cast<double>(units) / kUnitsPerMain;
}

// The text that units of a double are made of, as each of the two makes it.
std::string_view SixDecimals(double value, Buffer& buffer)
{
    const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                          std::chars_format::fixed, 6)
                                .ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::string_view PrintSixDecimals(double value, Buffer& buffer)
{
    const int size = std::snprintf(buffer.data(), buffer.size(), "%.6f", value);
    return {buffer.data(), static_cast<std::size_t>(size)};
}

void Require(bool agrees, const std::string& text)
{
    if (!agrees)
    {
        throw std::runtime_error("the contenders do not agree on " + text);
    }
}

void CompareContenders(const Amounts& amounts)
{
    Buffer byHand{};
    Buffer printed{};
    Buffer buffer{};
    for (std::size_t i = 0; i < kAmounts; ++i)
    {
        const std::string& text = amounts.texts[i];
        const std::int64_t units = amounts.units[i];
        Require(ToUnits(text) == units && std::llround(FromChars(text) * kUnitsPerMain) == units &&
                    std::strtod(text.c_str(), nullptr) == FromChars(text),
                text);
        const std::string_view written = UnitsToAmountText(units, buffer);
        Require(written == text + "0000" && written == WriteByHand(units, byHand) &&
                    written == WriteWithPrintf(units, printed) &&
                    written == UnitsToAmountText(units).SafeGetString(),
                text);
        const double value = amounts.doubles[i];
        Require(UnitsToAmount(units) == DivideUnits(units) &&
                    AmountToUnits(value) == units + (units > 0 ? 1000 : 0) &&
                    SixDecimals(value, byHand) == written &&
                    PrintSixDecimals(value, printed) == written,
                text);
    }
}

// Adds up what a conversion makes of each value, so that none can be left out.
template <typename Value, typename Convert>
benchmarks::Contender Each(const char* name, const std::vector<Value>& values, Convert convert)
{
    return {name, [&values, convert]
            {
                std::uint64_t sum = 0;
                for (const Value& value : values)
                {
                    sum += static_cast<std::uint64_t>(convert(value));
                }
                return sum;
            }};
}

template <typename Value, std::string_view (*Write)(Value, Buffer&)>
unsigned char WrittenEnds(Value value)
{
    static Buffer buffer;
    const std::string_view text = Write(value, buffer);
    return static_cast<unsigned char>(text.front() + text.back());
}

int Run()
{
    benchmarks::PrintSetting("The amount conversions beside the least that each can cost");
    const Amounts amounts = Generate();
    CompareContenders(amounts);
    std::printf("\n%zu amounts, %.1f characters each\n\ntext to units, decimals unknown\n",
                kAmounts, static_cast<double>(amounts.bytes) / static_cast<double>(kAmounts));
    benchmarks::TimeInTurn(
        {Each("std::from_chars", amounts.texts, FromChars),
         Each("AmountTextToUnits", amounts.texts, ToUnits),
         Each("strtod", amounts.texts,
              [](const std::string& text) { return std::strtod(text.c_str(), nullptr); })},
        amounts.bytes);
    std::printf("\nunits to text\n");
    benchmarks::TimeInTurn(
        {Each("digits written by hand", amounts.units, WrittenEnds<std::int64_t, WriteByHand>),
         Each("UnitsToAmountText", amounts.units, WrittenEnds<std::int64_t, UnitsToAmountText>),
         Each("UnitsToAmountText, a text of its own", amounts.units,
              [](std::int64_t units) { return UnitsToAmountText(units).SafeGetString()[0]; }),
         Each("snprintf", amounts.units, WrittenEnds<std::int64_t, WriteWithPrintf>)},
        amounts.bytes);
    std::printf("\nunits to double\n");
    benchmarks::TimeInTurn({Each("division", amounts.units, DivideUnits),
                            Each("UnitsToAmount", amounts.units, UnitsToAmount)},
                           amounts.bytes);
    std::printf("\ndouble to units\n");
    benchmarks::TimeInTurn(
        {Each("std::to_chars, six decimals", amounts.doubles, WrittenEnds<double, SixDecimals>),
         Each("AmountToUnits", amounts.doubles, AmountToUnits),
         Each("snprintf, six decimals", amounts.doubles, WrittenEnds<double, PrintSixDecimals>)},
        amounts.bytes);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
