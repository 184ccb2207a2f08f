#include "host/replay/ways.h"

#include <set>

namespace replay
{

namespace
{

using rulebook::ContractKey;
using rulebook::RuleBook;

/// The order types of a key.
struct Types
{
    std::set<std::int64_t> used;  ///< with terms
    std::set<std::int64_t> taken; ///< the same of every key
    bool hasEntry = false;        ///< a contract that is asked where no rule was found
};

void Add(const RuleBook& book, const ContractKey& key, Types& types)
{
    for (const rulebook::Contract& contract : book.contracts)
    {
        for (const rulebook::ContractTerms& terms : contract.terms)
        {
            types.taken.insert(terms.type);
            if (terms.key == key)
            {
                types.used.insert(terms.type);
            }
        }
        types.hasEntry = types.hasEntry || (contract.entry && contract.entry->key == key);
    }
}

std::int64_t Unused(const std::set<std::int64_t>& taken)
{
    std::int64_t type = 0;
    while (taken.count(type) > 0)
    {
        ++type;
    }
    return type;
}

std::vector<Way> TypesOf(const Books& books, const ContractKey& key, const AskedWays& asked)
{
    if (asked.type)
    {
        return {{*asked.type, false, false}};
    }
    Types types;
    Add(books.before, key, types);
    Add(books.after, key, types);
    std::vector<Way> ways;
    for (const std::int64_t type : types.used)
    {
        ways.push_back({type, false, false});
    }
    if (types.hasEntry || ways.empty())
    {
        ways.push_back({Unused(types.taken), true, false});
    }
    return ways;
}

} // namespace

std::vector<Way> WaysOf(const Books& books, const ContractKey& key, const AskedWays& asked)
{
    std::vector<Way> ways;
    for (Way way : TypesOf(books, key, asked))
    {
        for (const bool isDistributed : {false, true})
        {
            if (asked.isDistributed.value_or(isDistributed) == isDistributed)
            {
                way.isDistributed = isDistributed;
                ways.push_back(way);
            }
        }
    }
    return ways;
}

std::string InWords(const Way& way)
{
    return (way.isOtherTypes ? std::string("any other order type")
                             : "order type " + std::to_string(way.type)) +
           (way.isDistributed ? ", VEU on" : ", VEU off");
}

} // namespace replay
