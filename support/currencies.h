#pragma once

#include <cstdint>

/// What is known of one currency.
struct CurrencyInfo
{
    char code[4];           ///< ISO 4217 alphabetic code
    char numeric[4];        ///< ISO 4217 numeric code
    std::uint16_t decimals; ///< 0xFFFF: not applicable (metals, units of account)
    bool withdrawn;         ///< no longer legal tender; old files still carry it
};

/// The currency table.
class TResourceDevise
{
public:
    virtual ~TResourceDevise() = default;

    /// The number of decimals of a currency, 0xFFFF when the code is unknown. `reserved` is 0.
    virtual std::uint16_t GetDecimals(const char* code, int reserved) const;

    /// The currency, or null when the code is unknown. Codes are compared case by case.
    virtual const CurrencyInfo* Find(const char* code) const;
};

/// The process's currency table; a host may put its own in its place or null.
extern TResourceDevise* GlobalResourceDevise;
