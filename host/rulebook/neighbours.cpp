#include "host/rulebook/neighbours.h"

#include "host/rulebook/text_checks.h"
#include "host/text.h"

#include <algorithm>

namespace rulebook
{

namespace
{

// A contract without identifier has no name but its terms: it is equal to another or is new.
bool Has(const std::vector<Contract>& contracts, const Contract& contract)
{
    return std::find(contracts.begin(), contracts.end(), contract) != contracts.end();
}

} // namespace

TermsKey KeyOf(const ContractTerms& terms)
{
    return {terms.key.vpname,   terms.key.vfname, terms.key.vcname,
            terms.key.protocol, terms.key.server, terms.type};
}

Neighbours::Neighbours(const RuleBook& database, const RuleBook& file)
{
    std::set<std::string> huids;
    for (const Holder& holder : file.holders)
    {
        huids.insert(holder.huid);
    }
    std::set<std::optional<std::string>> cuids;
    for (const Contract& contract : file.contracts)
    {
        cuids.insert(contract.cuid);
    }
    for (const Holder& holder : database.holders)
    {
        if (huids.count(holder.huid) == 0)
        {
            Take(holder);
        }
    }
    for (const Contract& contract : database.contracts)
    {
        const bool isNamed =
            contract.cuid ? cuids.count(contract.cuid) != 0 : Has(file.contracts, contract);
        if (!isNamed)
        {
            Take(contract);
        }
    }
}

void Neighbours::Take(const Holder& holder)
{
    m_huids.insert(holder.huid);
    for (const Certificate& certificate : holder.certificates)
    {
        m_owners.emplace(InLowerCase(certificate.commonName), &holder);
    }
}

void Neighbours::Take(const Contract& contract)
{
    m_contracts.push_back(&contract);
    if (contract.cuid)
    {
        m_cuids.insert(*contract.cuid);
    }
    for (const ContractTerms& terms : contract.terms)
    {
        m_terms.emplace(KeyOf(terms), &contract);
    }
}

const Holder* Neighbours::OwnerOf(const std::string& commonName) const
{
    const auto found = m_owners.find(InLowerCase(commonName));
    return found == m_owners.end() ? nullptr : found->second;
}

const Contract* Neighbours::WithTerms(const ContractTerms& terms) const
{
    const auto found = m_terms.find(KeyOf(terms));
    return found == m_terms.end() ? nullptr : found->second;
}

std::string InDatabase(const Contract& contract)
{
    return (contract.cuid ? "contract " + host::Quoted(*contract.cuid)
                          : std::string("a contract without cuid")) +
           " of the database";
}

} // namespace rulebook
