#pragma once

#include <cstdint>
#include <type_traits>

/// One holder of a rule, with what the look-up found of it.
struct holderSlot
{
    char huid[256];
    std::int32_t notOpposition; ///< 1: the holder is not in opposition
    wchar_t certificateName[256];
    wchar_t lastName[256];
    wchar_t firstName[256];
};

/// One rule line of a contract. A plain record, zero-filled before a row is read into it; texts
/// are cut to 255 characters.
struct cuidRule
{
    char cuid[256];
    std::int32_t active;     ///< 0: the contract is blocked
    std::int32_t allHolders; ///< non-zero: any signer is accepted
    std::int32_t alone;      ///< non-zero: the first holder signs alone
    double amount;           ///< limit in the currency's main unit
    std::int32_t tlevel;     ///< 0 limits the file's total, 1 its largest order, others nothing
    std::int32_t profile;    ///< 0 single signature, 1 double signature, others impose nothing
    holderSlot holder1;
    holderSlot holder2;
};

// An array of these is large, and its storage is not touched before it is used.
static_assert(std::is_trivial_v<cuidRule>);
