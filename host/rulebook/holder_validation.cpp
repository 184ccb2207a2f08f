#include "host/rulebook/holder_validation.h"

#include "host/rulebook/key_checker.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/text.h"

#include <map>

namespace rulebook
{

namespace
{

class HolderValidator
{
public:
    HolderValidator(const Neighbours& neighbours, FileChecker& checker)
        : m_neighbours(neighbours), m_checker(checker),
          m_keys(checker, kHolderTable, neighbours.Huids())
    {
    }

    void Check(const std::string& path, const Holder& holder)
    {
        m_checker.CheckName(path + "." + kHuid, holder.huid, kHuidColumn);
        m_keys.Check(path + "." + kHuid, holder.huid);
        m_checker.CheckName(path + "." + kPartner, holder.vpname, kHolderPartnerColumn);
        m_checker.CheckName(path + "." + kFirstName, holder.firstName, kFirstNameColumn);
        m_checker.CheckName(path + "." + kLastName, holder.lastName, kLastNameColumn);
        m_checker.CheckOpposition(path + "." + kOpposition, holder.opposition);
        for (std::size_t each = 0; each < holder.certificates.size(); ++each)
        {
            const std::string item = Places::Item(path + "." + kCertificates, each);
            m_checker.CheckCertificate(item, holder.certificates[each]);
            CheckOwner(item + "." + kCommonName, holder.certificates[each].commonName, holder.huid);
        }
    }

private:
    struct Owner
    {
        std::string huid;
        std::size_t line = 0;
    };

    // Letter case makes no other certificate.
    void CheckOwner(const std::string& path, const std::string& name, const std::string& huid)
    {
        if (name.empty())
        {
            return;
        }
        if (const Holder* const other = m_neighbours.OwnerOf(name); other != nullptr)
        {
            TellShared(path, name, other->huid, "of the database");
        }
        const auto [first, isNew] =
            m_owners.try_emplace(InLowerCase(name), Owner{huid, m_checker.LineOf(path)});
        if (isNew)
        {
            return;
        }
        const std::string line = "in line " + std::to_string(first->second.line);
        if (first->second.huid != huid)
        {
            TellShared(path, name, first->second.huid, line);
            return;
        }
        m_checker.Wrong(
            path, "the holder has the certificate " + host::Quoted(name) + " " + line + " already.",
            "Keep one of the two.");
    }

    void TellShared(const std::string& path, const std::string& name, const std::string& huid,
                    const std::string& place)
    {
        m_checker.Doubtful(
            path,
            "the certificate " + host::Quoted(name) + " is also that of holder " +
                host::Quoted(huid) + " " + place + ": who signs with it counts as either.",
            "Give each holder a certificate of his own, unless they are to share it.");
    }

    const Neighbours& m_neighbours;
    FileChecker& m_checker;
    KeyChecker m_keys;
    std::map<std::u32string, Owner> m_owners;
};

} // namespace

void ValidateHolders(const RuleBook& book, const Neighbours& neighbours, FileChecker& checker)
{
    HolderValidator validator(neighbours, checker);
    for (std::size_t index = 0; index < book.holders.size(); ++index)
    {
        validator.Check(Places::Item(kHolderTable, index), book.holders[index]);
    }
}

} // namespace rulebook
