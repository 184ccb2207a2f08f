#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace engine
{

/// A non-negative decimal number, exact to 17 places after the point. One number read has at most
/// 18 significant digits before it; sums have room for 10^33 such numbers.
class ExactDecimal
{
public:
    static constexpr unsigned kFractionDigits = 17;
    static constexpr unsigned kIntegerDigits = 18;

    enum class ParseResult
    {
        Ok,
        Empty,
        NotANumber,
        Negative,
        TooManyDigits,
    };

    /// The largest number that one reading can give.
    static ExactDecimal Largest() noexcept;

    /// Reads digits with at most one separator, blanks and line ends around them and a leading plus
    /// sign allowed. `value` is written on Ok and on TooManyDigits: then it is the number rounded
    /// up to the last place, or Largest() for one that is larger still.
    static ParseResult Parse(std::string_view text, char separator, ExactDecimal& value);

    void Add(const ExactDecimal& other) noexcept;
    bool IsZero() const noexcept;
    /// Digits after the point without trailing zeros.
    unsigned FractionDigits() const noexcept;
    /// With at most `decimals` places. A remainder is rounded up, away from zero, so that no limit
    /// is slipped under.
    ExactDecimal RoundedUp(unsigned decimals) const noexcept;
    /// RoundedUp, with a point and exactly `decimals` places (none: no point).
    std::string ToText(unsigned decimals) const;

    friend std::strong_ordering operator<=>(const ExactDecimal& left,
                                            const ExactDecimal& right) noexcept;
    friend bool operator==(const ExactDecimal& left, const ExactDecimal& right) noexcept = default;

private:
    void Set(std::uint64_t whole, std::string_view fraction) noexcept;
    void AddUnit(unsigned decimals) noexcept;

    // Base 10^17, the fraction first.
    std::array<std::uint64_t, 4> m_limbs{};
};

} // namespace engine
