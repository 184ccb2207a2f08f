#include "host/rulebook/validation.h"

#include "host/rulebook/holder_validation.h"
#include "host/rulebook/key_checker.h"
#include "host/rulebook/neighbours.h"
#include "host/rulebook/rule_doubts.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/rulebook/short_names.h"
#include "host/rulebook/text_checks.h"
#include "host/suggestion.h"
#include "host/text.h"

#include <map>
#include <vector>

namespace rulebook
{

namespace
{

class Validator
{
public:
    Validator(const RuleFile& file, const Neighbours& neighbours, Problems& problems)
        : m_book(file.book), m_neighbours(neighbours), m_known(neighbours.Huids()),
          m_checker(file.places, problems)
    {
    }

    void Run()
    {
        ValidateHolders(m_book, m_neighbours, m_checker);
        for (const Holder& holder : m_book.holders)
        {
            m_known.insert(holder.huid);
        }
        m_knownList.assign(m_known.begin(), m_known.end());
        for (const Contract* const contract : m_neighbours.Contracts())
        {
            AddNames(*contract);
        }
        CheckContracts();
    }

private:
    void AddNames(const Contract& contract)
    {
        const auto add = [&](const ContractKey& key)
        {
            m_partners.AddOfDatabase(key.vpname, contract);
            m_services.AddOfDatabase(key.vfname, contract);
            m_clients.AddOfDatabase(key.vcname, contract);
        };
        for (const ContractTerms& terms : contract.terms)
        {
            add(terms.key);
        }
        if (contract.entry)
        {
            add(contract.entry->key);
        }
    }

    void CheckContracts()
    {
        KeyChecker keys(m_checker, kContractTable, m_neighbours.Cuids());
        for (std::size_t index = 0; index < m_book.contracts.size(); ++index)
        {
            const Contract& contract = m_book.contracts[index];
            const std::string path = Places::Item(kContractTable, index);
            if (contract.cuid)
            {
                m_checker.CheckName(path + "." + kCuid, *contract.cuid, kCuidColumn);
                keys.Check(path + "." + kCuid, *contract.cuid);
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
            if (const Contract* const other = m_neighbours.WithTerms(terms); other != nullptr)
            {
                TellSameTerms(item, InDatabase(*other));
            }
            const auto [first, isNew] = m_terms.emplace(KeyOf(terms), m_checker.LineOf(item));
            if (!isNew)
            {
                TellSameTerms(item, "line " + std::to_string(first->second));
            }
        }
        if (contract.terms.empty() && !contract.rules.empty())
        {
            m_checker.Doubtful(path,
                               "the contract has rules but no terms: no check reads its rules.",
                               "Add terms = [ { type = 1, … } ], a line for each order type.");
        }
    }

    void TellSameTerms(const std::string& path, const std::string& other)
    {
        m_checker.Doubtful(path,
                           other + " has terms for the same partner, service, client, protocol, "
                                   "side and type: a check judges the rules of both, in whichever "
                                   "order the database gives them.",
                           "Keep one of the two, unless both are to be judged.");
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
            m_checker.CheckName(path, name, column);
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
        DoubtRules(path, contract, m_checker);
    }

    void CheckHolder(const std::string& path, const std::optional<std::string>& huid)
    {
        m_checker.CheckName(path, huid, kHuidColumn);
        if (huid && !huid->empty() && m_known.find(*huid) == m_known.end())
        {
            m_checker.Wrong(path, "the holder " + host::Quoted(*huid) + " is not known.",
                            "Add a [[holder]] with this huid, or correct it." +
                                host::DidYouMean(*huid, m_knownList, ""));
        }
    }

    const RuleBook& m_book;
    const Neighbours& m_neighbours;
    std::set<std::string> m_known;
    std::vector<std::string> m_knownList;
    FileChecker m_checker;
    ShortNames m_partners;
    ShortNames m_services;
    ShortNames m_clients;
    std::set<std::pair<std::string, std::string>> m_checkedNames;
    std::map<TermsKey, std::size_t> m_terms;
};

} // namespace

void Validate(const RuleFile& file, const RuleBook* database, Problems& problems)
{
    const Neighbours neighbours =
        database == nullptr ? Neighbours() : Neighbours(*database, file.book);
    Validator(file, neighbours, problems).Run();
    if (file.book == RuleBook() && problems.Errors() == 0)
    {
        problems.Add({1, "", "the file has neither holders nor contracts.",
                      "Write [[holder]] and [[contract]] tables, such as signcheck rules export "
                      "prints.",
                      true});
    }
}

} // namespace rulebook
