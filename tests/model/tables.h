#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The rule tables in memory, a plain record for each row, in the order of insertion.

namespace model
{

using Text = std::wstring;
using NullableText = std::optional<Text>;
using NullableNumber = std::optional<std::int64_t>;

struct HolderRow
{
    Text huid;
    NullableText firstName;
    NullableText lastName;
    NullableText opposition;
};

struct CertificateRow
{
    Text huid;
    Text commonName;
};

struct ContractKey
{
    Text partner;
    Text service;
    Text client;
    std::int64_t protocol = 0;
    std::int64_t server = 0;
};

/// SSR_CONTRACT
struct ContractRow
{
    Text cuid;
    ContractKey key;
    NullableNumber allHolders;
    NullableText opposition;
};

/// SSR_CONTRACTCUR
struct CurrentRow
{
    NullableText cuid;
    ContractKey key;
    std::int64_t type = 0;
    NullableNumber profile;
    NullableNumber allHolders;
    NullableText opposition;
};

/// SSR_CONTRACTRULE
struct RuleRow
{
    Text cuid;
    NullableText huid1;
    NullableText huid2;
    NullableNumber alone;
    NullableText amount;
    NullableNumber tlevel;
};

struct Tables
{
    std::vector<HolderRow> holders;
    std::vector<CertificateRow> certificates;
    std::vector<ContractRow> contracts;
    std::vector<CurrentRow> current;
    std::vector<RuleRow> rules;
};

} // namespace model
