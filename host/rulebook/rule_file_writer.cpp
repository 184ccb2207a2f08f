#include "host/rulebook/rule_file_writer.h"

#include "host/rulebook/iso_date.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/text.h"

#include <cstdio>

namespace rulebook
{

namespace
{

constexpr const char* kOpening =
    R"(# Holders, contracts and rules of signcheck. Checked by: signcheck rules validate FILE
# Shown against a database by: signcheck rules diff FILE; written to it by: signcheck rules apply FILE
#
# A field that is left out has no value (NULL). A number without a word of its own stands as a number.
#
# [[holder]]    who may sign: huid, partner, first-name, last-name, certificates
#   opposition    "0" may sign, any other number is blocked
#   certificates  name: the common name, as the signature has it; serial; expires: a date
# [[contract]]  cuid, and the partner, service, client, protocol and side that it is for
#   side          "server" (the bank's) or "requester"
#   entry         what is read when no rule is found
#   terms         for each order type: profile "single" or "double" signature; all-holders: whether
#                 anyone may sign; opposition of the contract; and its own partner, service, client,
#                 protocol or side where they differ
#   rules         in the order in which they are judged: holder1, holder2; alone: holder1 signs by
#                 himself; amount: the limit, in quotes; level: of the whole "file" or its
#                 "largest-order"
)";

bool IsEscaped(char32_t letter)
{
    const bool isControl = letter < 0x20 || (letter >= 0x7F && letter < 0xA0);
    // They reorder what is shown, so that a name could read as another one.
    const bool isDirectionMark = (letter >= 0x200E && letter <= 0x200F) ||
                                 (letter >= 0x202A && letter <= 0x202E) ||
                                 (letter >= 0x2066 && letter <= 0x2069) || letter == 0xFEFF;
    return isControl || isDirectionMark;
}

std::string Text(const std::string& utf8)
{
    std::string quoted = "\"";
    for (const char32_t letter : host::CodePoints(utf8))
    {
        if (letter == U'"' || letter == U'\\')
        {
            quoted += '\\';
        }
        if (IsEscaped(letter))
        {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\u%04X", static_cast<unsigned>(letter));
            quoted += escape;
            continue;
        }
        quoted += host::Utf8FromCodePoint(letter);
    }
    return quoted + "\"";
}

template <std::size_t Count>
std::string Word(const NumberWord (&words)[Count], std::int64_t number)
{
    for (const NumberWord& word : words)
    {
        if (word.number == number)
        {
            return Text(word.word);
        }
    }
    return std::to_string(number);
}

std::string Switch(std::int64_t number)
{
    return number == 1 ? "true" : number == 0 ? "false" : std::to_string(number);
}

/// Fields of one table, in lines of their own or in one line within braces.
class Fields
{
public:
    explicit Fields(bool isInline) : m_isInline(isInline) {}

    Fields& Add(const char* field, const std::string& value)
    {
        if (m_isInline)
        {
            m_text += m_text.empty() ? "" : ", ";
        }
        m_text += std::string(field) + " = " + value + (m_isInline ? "" : "\n");
        return *this;
    }

    Fields& Add(const char* field, const std::optional<std::string>& text)
    {
        return text ? Add(field, Text(*text)) : *this;
    }

    template <typename Format>
    Fields& Add(const char* field, const std::optional<std::int64_t>& number, Format&& format)
    {
        return number ? Add(field, format(*number)) : *this;
    }

    /// The fields of the key that differ from those of `outer`.
    Fields& AddKey(const ContractKey& key, const ContractKey* outer)
    {
        const auto differs = [&](auto ContractKey::*member)
        { return outer == nullptr || key.*member != outer->*member; };
        const auto add = [&](const char* field, std::string ContractKey::*member)
        {
            if (differs(member))
            {
                Add(field, Text(key.*member));
            }
        };
        add(kPartner, &ContractKey::vpname);
        add(kService, &ContractKey::vfname);
        add(kClient, &ContractKey::vcname);
        if (differs(&ContractKey::protocol))
        {
            Add(kProtocol, std::to_string(key.protocol));
        }
        if (differs(&ContractKey::server))
        {
            Add(kSide, Word(kSides, key.server));
        }
        return *this;
    }

    std::string Lines() const { return m_text; }
    std::string Braces() const { return m_text.empty() ? "{}" : "{ " + m_text + " }"; }

private:
    bool m_isInline;
    std::string m_text;
};

std::string Braces(const Certificate& certificate)
{
    Fields fields(true);
    fields.Add(kCommonName, Text(certificate.commonName)).Add(kSerial, certificate.serial);
    if (const auto& expires = certificate.expires; expires)
    {
        fields.Add(kExpires, IsIsoDate(*expires) ? *expires : Text(*expires));
    }
    return fields.Braces();
}

std::string Braces(const ContractEntry& entry, const ContractKey* outer)
{
    return Fields(true)
        .AddKey(entry.key, outer)
        .Add(kAllHolders, entry.allHolders, Switch)
        .Add(kOpposition, entry.opposition)
        .Braces();
}

std::string Braces(const ContractTerms& terms, const ContractKey* outer)
{
    return Fields(true)
        .Add(kType, std::to_string(terms.type))
        .AddKey(terms.key, outer)
        .Add(kProfile, terms.profile, [](std::int64_t number) { return Word(kProfiles, number); })
        .Add(kAllHolders, terms.allHolders, Switch)
        .Add(kOpposition, terms.opposition)
        .Braces();
}

std::string Braces(const Rule& rule)
{
    return Fields(true)
        .Add(kHolder1, rule.huid1)
        .Add(kHolder2, rule.huid2)
        .Add(kAlone, rule.alone, Switch)
        .Add(kAmount, rule.amount)
        .Add(kLevel, rule.level, [](std::int64_t number) { return Word(kLevels, number); })
        .Braces();
}

/// "name = [" with an item a line; nothing for no item.
template <typename Item, typename Format>
std::string List(const char* field, const std::vector<Item>& items, Format&& format)
{
    if (items.empty())
    {
        return {};
    }
    std::string text = std::string(field) + " = [\n";
    for (const Item& item : items)
    {
        text += "  " + format(item) + ",\n";
    }
    return text + "]\n";
}

// What entry and terms have in common stands once, before them.
const ContractKey* OuterKey(const Contract& contract)
{
    if (!contract.terms.empty())
    {
        return &contract.terms.front().key;
    }
    return contract.entry ? &contract.entry->key : nullptr;
}

} // namespace

std::string RuleFileOpening()
{
    return kOpening;
}

std::string RuleFileTable(const Holder& holder)
{
    return std::string("\n[[") + kHolderTable + "]]\n" +
           Fields(false)
               .Add(kHuid, Text(holder.huid))
               .Add(kPartner, holder.vpname)
               .Add(kFirstName, holder.firstName)
               .Add(kLastName, holder.lastName)
               .Add(kOpposition, holder.opposition)
               .Lines() +
           List(kCertificates, holder.certificates,
                [](const Certificate& certificate) { return Braces(certificate); });
}

std::string RuleFileTable(const Contract& contract)
{
    const ContractKey* const outer = OuterKey(contract);
    Fields fields(false);
    fields.Add(kCuid, contract.cuid);
    if (outer != nullptr)
    {
        fields.AddKey(*outer, nullptr);
    }
    if (contract.entry)
    {
        fields.Add(kEntry, Braces(*contract.entry, outer));
    }
    return std::string("\n[[") + kContractTable + "]]\n" + fields.Lines() +
           List(kTerms, contract.terms,
                [outer](const ContractTerms& terms) { return Braces(terms, outer); }) +
           List(kRules, contract.rules, [](const Rule& rule) { return Braces(rule); });
}

} // namespace rulebook
