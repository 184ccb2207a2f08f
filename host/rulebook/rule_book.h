#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace rulebook
{

// Holders, contracts and rules as the database holds them. Texts are UTF-8, NULL is no value, and
// nothing is read into a value: an amount is the text of its column.

/// A row of SSR_HOLDERID.
struct Certificate
{
    std::string commonName;
    std::optional<std::string> serial;
    std::optional<std::string> expires; ///< a date such as 2027-06-30

    bool operator==(const Certificate&) const = default;
};

/// A row of SSR_HOLDER with its certificates.
struct Holder
{
    std::string huid;
    std::optional<std::string> vpname;
    std::optional<std::string> firstName;
    std::optional<std::string> lastName;
    std::optional<std::string> opposition;
    std::vector<Certificate> certificates; ///< in the order in which a look-up reads them

    bool operator==(const Holder&) const = default;
};

/// A row of SSR_CONTRACTRULE.
struct Rule
{
    std::optional<std::string> huid1;
    std::optional<std::string> huid2;
    std::optional<std::int64_t> alone;
    std::optional<std::string> amount;
    std::optional<std::int64_t> level; ///< 0 limits the file's total, 1 its largest order

    bool operator==(const Rule&) const = default;
};

/// Whose orders a contract is about, as a check names it but for the order type.
struct ContractKey
{
    std::string vpname;
    std::string vfname;
    std::string vcname;
    std::int64_t protocol = 0;
    std::int64_t server = 0; ///< 1 on the bank's side, 0 on the requester's

    bool operator==(const ContractKey&) const = default;
};

/// A row of SSR_CONTRACT, which a check asks only when it found no rule.
struct ContractEntry
{
    ContractKey key;
    std::optional<std::int64_t> allHolders;
    std::optional<std::string> opposition;

    bool operator==(const ContractEntry&) const = default;
};

/// A row of SSR_CONTRACTCUR: what the contract's rules apply to, and on which terms.
struct ContractTerms
{
    ContractKey key;
    std::int64_t type = 0;
    std::optional<std::int64_t> profile;
    std::optional<std::int64_t> allHolders;
    std::optional<std::string> opposition;

    bool operator==(const ContractTerms&) const = default;
};

/// All that the tables hold of one contract identifier. Several rows of terms share the rules. A
/// row of terms that still awaits its identifier is a contract of its own, without rules.
struct Contract
{
    std::optional<std::string> cuid;
    std::optional<ContractEntry> entry;
    std::vector<ContractTerms> terms;
    std::vector<Rule> rules; ///< in the order in which they are judged

    bool operator==(const Contract&) const = default;
};

struct RuleBook
{
    std::vector<Holder> holders;
    std::vector<Contract> contracts;

    bool operator==(const RuleBook&) const = default;
};

} // namespace rulebook
