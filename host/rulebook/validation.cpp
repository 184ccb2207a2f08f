#include "host/rulebook/validation.h"

#include "host/rulebook/rule_file_fields.h"
#include "host/rulebook/text_checks.h"
#include "host/suggestion.h"
#include "host/text.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace rulebook
{

namespace
{

constexpr std::size_t kKeyLength = 8;

/// Partners, services or clients by their first eight characters: a column and a check have no
/// more.
class ShortNames
{
public:
    void Check(FileChecker& checker, const std::string& path, const std::string& name)
    {
        const auto [first, isNew] =
            m_seen.try_emplace(host::CutTo(name, kKeyLength), name, checker.LineOf(path));
        const auto& [other, line] = first->second;
        if (!isNew && other != name)
        {
            checker.Wrong(path,
                          host::Quoted(name) + " is the same as " + host::Quoted(other) +
                              " of line " + std::to_string(line) +
                              " in its first 8 characters, and a check compares no more.",
                          "Give it a name that differs within 8 characters.");
        }
    }

private:
    std::map<std::string, std::pair<std::string, std::size_t>> m_seen;
};

class Validator
{
public:
    Validator(const RuleFile& file, const std::set<std::string>& knownHolders, Problems& problems)
        : m_book(file.book), m_known(knownHolders), m_checker(file.places, problems)
    {
    }

    void Run()
    {
        CheckHolders();
        for (const Holder& holder : m_book.holders)
        {
            m_known.insert(holder.huid);
        }
        m_knownList.assign(m_known.begin(), m_known.end());
        CheckContracts();
    }

private:
    using Lines = std::map<std::string, std::size_t>; // where a name stood first

    void CheckHolders()
    {
        Lines holders;
        std::map<std::u32string, std::pair<std::string, std::size_t>> certificates;
        for (std::size_t index = 0; index < m_book.holders.size(); ++index)
        {
            const Holder& holder = m_book.holders[index];
            const std::string path = Places::Item(kHolderTable, index);
            m_checker.CheckText(path + "." + kHuid, holder.huid, kHuidColumn);
            RefuseSecond(holders, path + "." + kHuid, holder.huid, "holder");
            m_checker.CheckText(path + "." + kPartner, holder.vpname, kHolderPartnerColumn);
            m_checker.CheckText(path + "." + kFirstName, holder.firstName, kFirstNameColumn);
            m_checker.CheckText(path + "." + kLastName, holder.lastName, kLastNameColumn);
            m_checker.CheckOpposition(path + "." + kOpposition, holder.opposition);
            for (std::size_t each = 0; each < holder.certificates.size(); ++each)
            {
                const std::string item = Places::Item(path + "." + kCertificates, each);
                m_checker.CheckCertificate(item, holder.certificates[each]);
                CheckOwner(certificates, item + "." + kCommonName,
                           holder.certificates[each].commonName, holder.huid);
            }
        }
    }

    void RefuseSecond(Lines& seen, const std::string& path, const std::string& name,
                      const std::string& what)
    {
        const auto [first, isNew] = seen.emplace(name, m_checker.LineOf(path));
        if (!isNew && !name.empty())
        {
            m_checker.Wrong(path,
                            "the " + what + " " + host::Quoted(name) + " stands in line " +
                                std::to_string(first->second) + " already.",
                            "Keep one of the two.");
        }
    }

    // Letter case makes no other certificate.
    void CheckOwner(std::map<std::u32string, std::pair<std::string, std::size_t>>& seen,
                    const std::string& path, const std::string& name, const std::string& huid)
    {
        const auto [first, isNew] =
            seen.try_emplace(InLowerCase(name), huid, m_checker.LineOf(path));
        const auto& [owner, line] = first->second;
        if (isNew || name.empty())
        {
            return;
        }
        if (owner == huid)
        {
            m_checker.Wrong(path,
                            "the holder has the certificate " + host::Quoted(name) + " in line " +
                                std::to_string(line) + " already.",
                            "Keep one of the two.");
            return;
        }
        m_checker.Doubtful(
            path,
            "the certificate " + host::Quoted(name) + " is also that of holder " +
                host::Quoted(owner) + " in line " + std::to_string(line) +
                ": who signs with it counts as either.",
            "Give each holder a certificate of his own, unless they are to share it.");
    }

    void CheckContracts()
    {
        Lines contracts;
        for (std::size_t index = 0; index < m_book.contracts.size(); ++index)
        {
            const Contract& contract = m_book.contracts[index];
            const std::string path = Places::Item(kContractTable, index);
            if (contract.cuid)
            {
                m_checker.CheckText(path + "." + kCuid, *contract.cuid, kCuidColumn);
                RefuseSecond(contracts, path + "." + kCuid, *contract.cuid, "contract");
            }
            if (contract.entry)
            {
                CheckKey(path + "." + kEntry, path, contract.entry->key);
                m_checker.CheckOpposition(path + "." + kEntry + "." + kOpposition,
                                          contract.entry->opposition);
            }
            CheckTerms(path, contract);
            CheckRules(path, contract);
        }
    }

    void CheckTerms(const std::string& path, const Contract& contract)
    {
        for (std::size_t index = 0; index < contract.terms.size(); ++index)
        {
            const ContractTerms& terms = contract.terms[index];
            const std::string item = Places::Item(path + "." + kTerms, index);
            CheckKey(item, path, terms.key);
            m_checker.CheckOpposition(item + "." + kOpposition, terms.opposition);
            const auto [first, isNew] =
                m_terms.emplace(std::tuple(terms.key.vpname, terms.key.vfname, terms.key.vcname,
                                           terms.key.protocol, terms.key.server, terms.type),
                                m_checker.LineOf(item));
            if (!isNew)
            {
                m_checker.Doubtful(item,
                                   "line " + std::to_string(first->second) +
                                       " has terms for the same partner, service, client, "
                                       "protocol, side and type: a check judges the rules of both, "
                                       "in whichever order the database gives them.",
                                   "Keep one of the two, unless both are to be judged.");
            }
        }
        if (contract.terms.empty() && !contract.rules.empty())
        {
            m_checker.Doubtful(path,
                               "the contract has rules but no terms: no check reads its rules.",
                               "Add terms = [ { type = 1, … } ], a line for each order type.");
        }
    }

    // Where a table takes a name over from its contract, the name stands in a line of the contract.
    void CheckKey(const std::string& table, const std::string& contract, const ContractKey& key)
    {
        const auto check = [&](const char* field, const std::string& name, const TextColumn& column,
                               ShortNames& names)
        {
            const std::string own = table + "." + field;
            const std::string path = m_checker.Stands(own) ? own : contract + "." + field;
            if (!m_checkedNames.emplace(path, name).second)
            {
                return;
            }
            m_checker.CheckText(path, name, column);
            names.Check(m_checker, path, name);
        };
        check(kPartner, key.vpname, kPartnerColumn, m_partners);
        check(kService, key.vfname, kServiceColumn, m_services);
        check(kClient, key.vcname, kClientColumn, m_clients);
        if (key.server != 0 && key.server != 1)
        {
            m_checker.Doubtful(table,
                               "side " + std::to_string(key.server) +
                                   " is neither that of the server nor of the requester: no check "
                                   "finds it.",
                               "Write side = \"server\" or side = \"requester\".");
        }
    }

    void CheckRules(const std::string& path, const Contract& contract)
    {
        for (std::size_t index = 0; index < contract.rules.size(); ++index)
        {
            const Rule& rule = contract.rules[index];
            const std::string item = Places::Item(path + "." + kRules, index);
            CheckHolder(item + "." + kHolder1, rule.huid1);
            CheckHolder(item + "." + kHolder2, rule.huid2);
            if (rule.amount)
            {
                m_checker.CheckAmount(item + "." + kAmount, *rule.amount);
            }
        }
    }

    void CheckHolder(const std::string& path, const std::optional<std::string>& huid)
    {
        m_checker.CheckText(path, huid, kHuidColumn);
        if (huid && !huid->empty() && m_known.find(*huid) == m_known.end())
        {
            m_checker.Wrong(path, "the holder " + host::Quoted(*huid) + " is not known.",
                            "Add a [[holder]] with this huid, or correct it." +
                                host::DidYouMean(*huid, m_knownList, ""));
        }
    }

    const RuleBook& m_book;
    std::set<std::string> m_known;
    std::vector<std::string> m_knownList;
    FileChecker m_checker;
    ShortNames m_partners;
    ShortNames m_services;
    ShortNames m_clients;
    std::set<std::pair<std::string, std::string>> m_checkedNames;
    std::map<
        std::tuple<std::string, std::string, std::string, std::int64_t, std::int64_t, std::int64_t>,
        std::size_t>
        m_terms;
};

} // namespace

void Validate(const RuleFile& file, const std::set<std::string>& knownHolders, Problems& problems)
{
    Validator(file, knownHolders, problems).Run();
}

} // namespace rulebook
