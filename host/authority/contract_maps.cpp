#include "host/authority/contract_maps.h"

#include "database/cdatabase.h"
#include "host/refusal.h"
#include "host/rulebook/book_reading.h"
#include "host/text.h"

#include <algorithm>
#include <set>

namespace authority
{

namespace
{

void AddOnce(std::vector<rulebook::ContractKey>& keys, const rulebook::ContractKey& key)
{
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
    {
        keys.push_back(key);
    }
}

std::int64_t UnusedType(const rulebook::RuleBook& book)
{
    std::set<std::int64_t> used;
    for (const rulebook::Contract& contract : book.contracts)
    {
        for (const rulebook::ContractTerms& terms : contract.terms)
        {
            used.insert(terms.type);
        }
    }
    std::int64_t type = 0;
    while (used.count(type) > 0)
    {
        ++type;
    }
    return type;
}

// Rules of other contracts that a check of this one meets.
std::vector<std::string> Notes(const ContractUnderKey& part, const std::string& cuid)
{
    std::vector<std::string> notes;
    for (const rulebook::Contract& contract : part.book.contracts)
    {
        if (contract.cuid == cuid)
        {
            continue;
        }
        for (const rulebook::ContractTerms& terms : contract.terms)
        {
            if (std::find(part.types.begin(), part.types.end(), terms.type) != part.types.end() &&
                contract.cuid && !contract.rules.empty())
            {
                notes.push_back("The rules of contract " + *contract.cuid +
                                " count as well for order type " + std::to_string(terms.type) +
                                ": it has the same " +
                                "partner, service, client, protocol, side "
                                "and type.");
            }
        }
    }
    for (const rulebook::Holder& holder : part.book.holders)
    {
        if (holder.certificates.empty())
        {
            notes.push_back(NameOf(holder) + " [" + holder.huid +
                            "] has no certificate and can sign nothing.");
        }
        for (const rulebook::Certificate& certificate : holder.certificates)
        {
            if (!CanSign(certificate.commonName))
            {
                notes.push_back("The certificate name " + host::Quoted(certificate.commonName) +
                                " of " + NameOf(holder) +
                                " is empty, or has blanks at an end or a semicolon: no check can "
                                "be given it.");
            }
            else if (certificate.commonName.find('\'') != std::string::npos)
            {
                notes.push_back("The certificate name " + host::Quoted(certificate.commonName) +
                                " has an apostrophe: no holder is found for an order signed by "
                                "it, whoever else signs.");
            }
        }
    }
    return notes;
}

} // namespace

void AddKeys(std::vector<rulebook::ContractKey>& keys, const rulebook::Contract& contract)
{
    for (const rulebook::ContractTerms& terms : contract.terms)
    {
        AddOnce(keys, terms.key);
    }
    if (contract.entry)
    {
        AddOnce(keys, contract.entry->key);
    }
}

std::vector<ContractUnderKey> ReadContract(CDatabase& database, const host::Connection& connection,
                                           const std::string& cuid)
{
    const rulebook::RuleBook alone = rulebook::ReadBook(database, connection, {cuid, std::nullopt});
    std::vector<ContractUnderKey> parts;
    for (const rulebook::Contract& contract : alone.contracts)
    {
        std::vector<rulebook::ContractKey> keys;
        AddKeys(keys, contract);
        for (const rulebook::ContractKey& key : keys)
        {
            ContractUnderKey part;
            part.key = key;
            part.book = rulebook::ReadBook(database, connection, {std::nullopt, key});
            for (const rulebook::ContractTerms& terms : contract.terms)
            {
                const bool isNew =
                    std::find(part.types.begin(), part.types.end(), terms.type) == part.types.end();
                if (terms.key == key && isNew)
                {
                    part.types.push_back(terms.type);
                }
            }
            if (contract.entry && contract.entry->key == key)
            {
                part.otherType = UnusedType(part.book);
            }
            parts.push_back(std::move(part));
        }
    }
    if (parts.empty())
    {
        throw host::Refusal(host::kFindings,
                            "argument CONTRACT: the database " + host::Quoted(connection.shown) +
                                " has no contract " + host::Quoted(cuid) +
                                ". Give the identifier in column CUID of SSR_CONTRACTCUR or "
                                "SSR_CONTRACT.");
    }
    return parts;
}

ContractMaps MapContract(CDatabase& database, const host::Connection& connection,
                         const std::string& cuid)
{
    ContractMaps maps;
    maps.cuid = cuid;
    for (const ContractUnderKey& part : ReadContract(database, connection, cuid))
    {
        const scratch::Copy copy(database, connection, part.book);
        maps.provenance = copy.Provenance();
        for (const std::string& note : Notes(part, cuid))
        {
            maps.notes.push_back(note);
        }
        const auto add = [&](std::int64_t type, bool isOtherTypes)
        {
            const scratch::OrderKind kind = {part.key, type};
            scratch::Judge judge(copy, kind);
            maps.maps.push_back(MakeMap(judge, part.book, kind));
            maps.maps.back().isOtherTypes = isOtherTypes;
            maps.judged += judge.Count();
        };
        for (const std::int64_t type : part.types)
        {
            add(type, false);
        }
        if (part.otherType)
        {
            add(*part.otherType, true);
        }
    }
    return maps;
}

} // namespace authority
