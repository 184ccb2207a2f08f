#pragma once

#include "host/rulebook/rule_book.h"

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace rulebook
{

/// What a check finds terms by.
using TermsKey =
    std::tuple<std::string, std::string, std::string, std::int64_t, std::int64_t, std::int64_t>;
TermsKey KeyOf(const ContractTerms& terms);

/// What a database holds beside a rule file: the holders and contracts that the file does not name,
/// which stay as they are when it is applied.
class Neighbours
{
public:
    Neighbours() = default; ///< none, or no database was looked at

    /// Refers to `database`, which must outlive it.
    Neighbours(const RuleBook& database, const RuleBook& file);

    const std::set<std::string>& Huids() const noexcept { return m_huids; }
    const std::set<std::string>& Cuids() const noexcept { return m_cuids; }
    const std::vector<const Contract*>& Contracts() const noexcept { return m_contracts; }

    /// Who has the certificate, whatever its letter case; null when nobody has.
    const Holder* OwnerOf(const std::string& commonName) const;

    /// Whose terms a check finds by the same key; null when there is none.
    const Contract* WithTerms(const ContractTerms& terms) const;

private:
    void Take(const Holder& holder);
    void Take(const Contract& contract);

    std::set<std::string> m_huids;
    std::set<std::string> m_cuids;
    std::vector<const Contract*> m_contracts;
    std::map<std::u32string, const Holder*> m_owners;
    std::map<TermsKey, const Contract*> m_terms;
};

/// "contract 'C-1001' of the database"
std::string InDatabase(const Contract& contract);

} // namespace rulebook
