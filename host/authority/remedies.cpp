#include "host/authority/remedies.h"

#include "host/authority/bands.h"
#include "host/authority/progress.h"

#include <algorithm>

namespace authority
{

namespace
{

constexpr std::size_t kMostChanges = 3;
constexpr const char* kFree = "0";

/// One change on its own. An amount is settled only with the rest of its remedy.
struct Change
{
    enum class Kind
    {
        Signer,
        Total,
        Largest,
        Holder,
        Contract,
    };

    Kind kind;
    std::size_t index = 0; ///< of the party, holder or contract
};

/// Changes by their places, rising.
using Places = std::vector<std::size_t>;

/// Tries every set of changes, the small ones first.
class Search
{
public:
    Search(scratch::Copy& copy, const RemedyTask& task, std::vector<Remedy>& remedies)
        : m_copy(copy), m_task(task), m_judge(copy, task.kind), m_parties(PartiesOf(task.book)),
          m_limits(LimitsOf(task.book, task.kind)), m_remedies(remedies)
    {
        ListChanges();
    }

    void Run()
    {
        if (m_judge.Ask(m_task.order).verdict == scratch::kAccepted)
        {
            return;
        }
        Progress progress("sets of changes", CountSets());
        for (std::size_t size = 1; size <= kMostChanges; ++size)
        {
            Places places;
            Extend(places, 0, size, progress);
        }
        if (m_isChanged)
        {
            m_copy.Replace(m_task.book);
        }
    }

private:
    void ListChanges()
    {
        for (std::size_t party = 0; party < m_parties.size(); ++party)
        {
            m_changes.push_back({Change::Kind::Signer, party});
        }
        m_changes.push_back({Change::Kind::Total});
        m_changes.push_back({Change::Kind::Largest});
        for (std::size_t holder = 0; holder < m_task.book.holders.size(); ++holder)
        {
            if (m_task.book.holders[holder].opposition.value_or(kFree) != kFree)
            {
                m_changes.push_back({Change::Kind::Holder, holder});
            }
        }
        for (std::size_t contract = 0; contract < m_task.book.contracts.size(); ++contract)
        {
            if (IsBlocked(m_task.book.contracts[contract]))
            {
                m_changes.push_back({Change::Kind::Contract, contract});
            }
        }
    }

    static bool IsBlocked(const rulebook::Contract& contract)
    {
        const auto isSet = [](const auto& each)
        { return each.opposition.value_or(kFree) != kFree; };
        return std::any_of(contract.terms.begin(), contract.terms.end(), isSet) ||
               (contract.entry && isSet(*contract.entry));
    }

    std::size_t CountSets() const
    {
        std::size_t sets = 0;
        for (std::size_t size = 1; size <= kMostChanges; ++size)
        {
            sets += Choices(m_changes.size(), size);
        }
        return sets;
    }

    void Extend(Places& places, std::size_t from, std::size_t size, Progress& progress)
    {
        if (places.size() == size)
        {
            Try(places);
            progress.Step();
            return;
        }
        for (std::size_t place = from; place < m_changes.size(); ++place)
        {
            places.push_back(place);
            Extend(places, place + 1, size, progress);
            places.pop_back();
        }
    }

    // A part of it is accepted already.
    bool HoldsARemedy(const Places& places) const
    {
        return std::any_of(
            m_found.begin(), m_found.end(),
            [&places](const Places& found)
            { return std::includes(places.begin(), places.end(), found.begin(), found.end()); });
    }

    void Try(const Places& places)
    {
        if (HoldsARemedy(places))
        {
            return;
        }
        Remedy remedy;
        bool lowersTotal = false;
        bool lowersLargest = false;
        for (const std::size_t place : places)
        {
            const Change& change = m_changes[place];
            lowersTotal = lowersTotal || change.kind == Change::Kind::Total;
            lowersLargest = lowersLargest || change.kind == Change::Kind::Largest;
            if (!Apply(change, remedy))
            {
                return;
            }
        }
        Hold(remedy);
        if (Settle(remedy, lowersTotal, lowersLargest))
        {
            m_found.push_back(places);
            m_remedies.push_back(std::move(remedy));
        }
    }

    // False for a signer who has signed already.
    bool Apply(const Change& change, Remedy& remedy) const
    {
        switch (change.kind)
        {
        case Change::Kind::Signer:
        {
            const Party& party = m_parties[change.index];
            const auto& there = m_task.order.signers;
            const auto name =
                std::find_if(party.names.begin(), party.names.end(),
                             [&there](const std::string& each) {
                                 return std::find(there.begin(), there.end(), each) == there.end();
                             });
            if (name == party.names.end())
            {
                return false;
            }
            remedy.furtherSigners.push_back(*name);
            remedy.furtherLabels.push_back(party.label);
            return true;
        }
        case Change::Kind::Holder:
            remedy.freedHuids.push_back(m_task.book.holders[change.index].huid);
            remedy.freedLabels.push_back(NameOf(m_task.book.holders[change.index]));
            return true;
        case Change::Kind::Contract:
            remedy.activeContracts.push_back(
                m_task.book.contracts[change.index].cuid.value_or(std::string()));
            return true;
        default:
            return true;
        }
    }

    // The copy holds the book with the remedy's oppositions lifted.
    void Hold(const Remedy& remedy)
    {
        const bool isChanged = !remedy.freedHuids.empty() || !remedy.activeContracts.empty();
        if (isChanged || m_isChanged)
        {
            m_copy.Replace(Changed(m_task.book, remedy));
            m_isChanged = isChanged;
        }
    }

    bool IsAccepted(const Remedy& remedy)
    {
        return m_judge.Ask(Changed(m_task.order, remedy)).verdict == scratch::kAccepted;
    }

    /// The limits below an amount, the greatest first.
    static std::vector<double> Below(const std::vector<double>& limits, double amount)
    {
        std::vector<double> below;
        std::copy_if(limits.rbegin(), limits.rend(), std::back_inserter(below),
                     [amount](double limit) { return limit < amount; });
        return below;
    }

    // Finds the greatest amounts that are accepted.
    bool Settle(Remedy& remedy, bool lowersTotal, bool lowersLargest)
    {
        if (!lowersTotal)
        {
            return SettleLargest(remedy, lowersLargest);
        }
        for (const double limit : Below(m_limits.total, m_task.order.total))
        {
            remedy.totalAtMost = limit;
            if (SettleLargest(remedy, lowersLargest))
            {
                return true;
            }
        }
        return false;
    }

    bool SettleLargest(Remedy& remedy, bool lowersLargest)
    {
        if (!lowersLargest)
        {
            return IsAccepted(remedy);
        }
        for (const double limit : Below(m_limits.largest, m_task.order.largest))
        {
            remedy.largestAtMost = limit;
            if (IsAccepted(remedy))
            {
                return true;
            }
        }
        return false;
    }

    scratch::Copy& m_copy;
    const RemedyTask& m_task;
    scratch::Judge m_judge;
    std::vector<Party> m_parties;
    Limits m_limits;
    std::vector<Remedy>& m_remedies;
    std::vector<Change> m_changes;
    std::vector<Places> m_found;
    bool m_isChanged = false; ///< the copy holds a changed book
};

} // namespace

void FindRemedies(scratch::Copy& copy, const RemedyTask& task, std::vector<Remedy>& found)
{
    Search(copy, task, found).Run();
}

scratch::Order Changed(scratch::Order order, const Remedy& remedy)
{
    order.signers.insert(order.signers.end(), remedy.furtherSigners.begin(),
                         remedy.furtherSigners.end());
    order.total = std::min(order.total, remedy.totalAtMost.value_or(order.total));
    order.largest = std::min(order.largest, remedy.largestAtMost.value_or(order.largest));
    if (remedy.totalAtMost)
    {
        // No order of a file is above its total.
        order.largest = std::min(order.largest, order.total);
    }
    return order;
}

rulebook::RuleBook Changed(rulebook::RuleBook book, const Remedy& remedy)
{
    const auto has = [](const std::vector<std::string>& list, const std::string& text)
    { return std::find(list.begin(), list.end(), text) != list.end(); };
    for (rulebook::Holder& holder : book.holders)
    {
        if (has(remedy.freedHuids, holder.huid))
        {
            holder.opposition = kFree;
        }
    }
    for (rulebook::Contract& contract : book.contracts)
    {
        if (!has(remedy.activeContracts, contract.cuid.value_or(std::string())))
        {
            continue;
        }
        for (rulebook::ContractTerms& terms : contract.terms)
        {
            terms.opposition = kFree;
        }
        if (contract.entry)
        {
            contract.entry->opposition = kFree;
        }
    }
    return book;
}

} // namespace authority
