#include "host/authority/parties.h"

#include "support/casefold.h"
#include "support/codepage.h"

#include <algorithm>
#include <map>

namespace authority
{

namespace
{

// More than three names of one party decide as three do.
constexpr std::size_t kMostNames = 3;
constexpr const char* kBlanks = " \t\r\n";
constexpr const char* kAnyoneElse = "anyone else";

std::wstring Folded(const std::string& utf8)
{
    std::wstring folded;
    for (const wchar_t letter : support::WideFromUtf8(utf8))
    {
        folded += static_cast<wchar_t>(support::LowerCase(static_cast<char32_t>(letter)));
    }
    return folded;
}

/// Who has each certificate name, whatever its letter case.
class Owners
{
public:
    explicit Owners(const rulebook::RuleBook& book)
    {
        for (std::size_t index = 0; index < book.holders.size(); ++index)
        {
            for (const auto& certificate : book.holders[index].certificates)
            {
                m_owners[Folded(certificate.commonName)].push_back(index);
            }
        }
    }

    /// Each holder once for each of his certificates of this name.
    const std::vector<std::size_t>& Of(const std::string& name) const
    {
        static const std::vector<std::size_t> nobody;
        const auto found = m_owners.find(Folded(name));
        return found == m_owners.end() ? nobody : found->second;
    }

private:
    std::map<std::wstring, std::vector<std::size_t>> m_owners;
};

bool IsUniform(const rulebook::Holder& holder, const Owners& owners)
{
    return std::all_of(holder.certificates.begin(), holder.certificates.end(),
                       [&owners](const auto& certificate)
                       {
                           const std::string& name = certificate.commonName;
                           return owners.Of(name).size() == 1 && CanSign(name) &&
                                  name.find('\'') == std::string::npos;
                       });
}

Party WholeHolder(const rulebook::Holder& holder)
{
    Party party;
    party.label = NameOf(holder);
    party.huids = {holder.huid};
    for (const auto& certificate : holder.certificates)
    {
        if (party.names.size() < kMostNames)
        {
            party.names.push_back(certificate.commonName);
        }
    }
    return party;
}

// The holders that have exactly this name or one that differs in letter case.
Party OneName(const rulebook::RuleBook& book, const Owners& owners, const std::string& name)
{
    Party party;
    party.names = {name};
    party.breaksLookups = name.find('\'') != std::string::npos;
    for (const std::size_t index : owners.Of(name))
    {
        const rulebook::Holder& holder = book.holders[index];
        if (std::find(party.huids.begin(), party.huids.end(), holder.huid) == party.huids.end())
        {
            party.label += (party.label.empty() ? "" : " or ") + NameOf(holder);
            party.huids.push_back(holder.huid);
        }
    }
    party.isShared = party.huids.size() > 1;
    party.label += " (certificate " + name + ")";
    return party;
}

bool IsThere(const std::vector<Party>& parties, const std::string& name)
{
    return std::any_of(
        parties.begin(), parties.end(),
        [&name](const Party& party)
        { return std::find(party.names.begin(), party.names.end(), name) != party.names.end(); });
}

// Two people may have the same names.
void TellApart(std::vector<Party>& parties)
{
    std::map<std::string, int> uses;
    for (const Party& party : parties)
    {
        ++uses[party.label];
    }
    for (Party& party : parties)
    {
        if (uses[party.label] > 1 && !party.huids.empty())
        {
            party.label += " [" + party.huids.front() + "]";
        }
    }
}

Party AnyoneElse(const Owners& owners)
{
    Party party;
    party.label = kAnyoneElse;
    for (int number = 1; party.names.size() < kMostNames; ++number)
    {
        const std::string name = "signcheck anyone else " + std::to_string(number);
        if (owners.Of(name).empty())
        {
            party.names.push_back(name);
        }
    }
    return party;
}

} // namespace

std::string NameOf(const rulebook::Holder& holder)
{
    std::string name =
        holder.firstName.value_or(std::string()) + " " + holder.lastName.value_or(std::string());
    name.erase(0, std::min(name.find_first_not_of(kBlanks), name.size()));
    name.erase(name.find_last_not_of(kBlanks) + 1);
    return name.empty() ? holder.huid : name;
}

bool CanSign(const std::string& certificateName)
{
    return !certificateName.empty() && certificateName.find(';') == std::string::npos &&
           certificateName.find_first_not_of(kBlanks) == 0 &&
           certificateName.find_last_not_of(kBlanks) + 1 == certificateName.size();
}

std::vector<Party> PartiesOf(const rulebook::RuleBook& book)
{
    const Owners owners(book);
    std::vector<Party> parties;
    for (const rulebook::Holder& holder : book.holders)
    {
        if (holder.certificates.empty())
        {
            continue;
        }
        if (IsUniform(holder, owners))
        {
            parties.push_back(WholeHolder(holder));
            continue;
        }
        // Which certificate serves which holder may depend on the order of the rows, so each name
        // is a party of its own.
        for (const auto& certificate : holder.certificates)
        {
            if (CanSign(certificate.commonName) && !IsThere(parties, certificate.commonName))
            {
                parties.push_back(OneName(book, owners, certificate.commonName));
            }
        }
    }
    TellApart(parties);
    parties.push_back(AnyoneElse(owners));
    return parties;
}

} // namespace authority
