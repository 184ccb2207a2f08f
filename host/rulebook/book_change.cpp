#include "host/rulebook/book_change.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace rulebook
{

namespace
{

/// Finds the database's items by what the file names them by.
template <typename Item>
class Finder
{
public:
    Finder(const std::vector<Item>& items, std::string Item::*)
    {
        for (const Item& item : items)
        {
            m_named.emplace(item.huid, &item);
        }
    }

    // A contract without identifier has no name but its terms: it is equal to another or is new.
    Finder(const std::vector<Item>& items, std::optional<std::string> Item::*)
    {
        for (const Item& item : items)
        {
            if (item.cuid)
            {
                m_named.emplace(*item.cuid, &item);
            }
            else
            {
                m_nameless.push_back(&item);
            }
        }
    }

    const Item* Take(const Holder& wanted) { return TakeNamed(wanted.huid); }

    const Item* Take(const Contract& wanted)
    {
        if (wanted.cuid)
        {
            return TakeNamed(*wanted.cuid);
        }
        const auto found = std::find_if(m_nameless.begin(), m_nameless.end(),
                                        [&wanted](const Item* item) { return *item == wanted; });
        if (found == m_nameless.end())
        {
            return nullptr;
        }
        const Item* const item = *found;
        m_nameless.erase(found);
        return item;
    }

private:
    const Item* TakeNamed(const std::string& name) const
    {
        const auto found = m_named.find(name);
        return found == m_named.end() ? nullptr : found->second;
    }

    std::unordered_map<std::string, const Item*> m_named;
    std::vector<const Item*> m_nameless;
};

template <typename Item, typename Name>
void CompareItems(const std::vector<Item>& database, const std::vector<Item>& file, Name name,
                  bool removesOthers, std::vector<ItemChange<Item>>& changes, std::size_t& others)
{
    Finder<Item> finder(database, name);
    std::set<const Item*> named;
    for (const Item& after : file)
    {
        const Item* const before = finder.Take(after);
        named.insert(before);
        if (before == nullptr || !(*before == after))
        {
            changes.push_back({before, &after});
        }
    }
    for (const Item& before : database)
    {
        if (named.count(&before) != 0)
        {
            continue;
        }
        if (removesOthers)
        {
            changes.push_back({&before, nullptr});
        }
        else
        {
            ++others;
        }
    }
}

template <typename Item>
std::vector<Item> ChangedItems(const std::vector<Item>& database,
                               const std::vector<ItemChange<Item>>& changes)
{
    std::unordered_map<const Item*, const Item*> changed;
    for (const ItemChange<Item>& change : changes)
    {
        if (change.before != nullptr)
        {
            changed.emplace(change.before, change.after);
        }
    }
    std::vector<Item> items;
    for (const Item& item : database)
    {
        const auto found = changed.find(&item);
        if (found == changed.end())
        {
            items.push_back(item);
        }
        else if (found->second != nullptr)
        {
            items.push_back(*found->second);
        }
    }
    for (const ItemChange<Item>& change : changes)
    {
        if (change.before == nullptr)
        {
            items.push_back(*change.after);
        }
    }
    return items;
}

} // namespace

BookChange Compare(const RuleBook& database, const RuleBook& file, bool removesOthers)
{
    BookChange change;
    CompareItems(database.holders, file.holders, &Holder::huid, removesOthers, change.holders,
                 change.otherHolders);
    CompareItems(database.contracts, file.contracts, &Contract::cuid, removesOthers,
                 change.contracts, change.otherContracts);
    return change;
}

RuleBook Changed(const RuleBook& database, const BookChange& change)
{
    return {ChangedItems(database.holders, change.holders),
            ChangedItems(database.contracts, change.contracts)};
}

} // namespace rulebook
