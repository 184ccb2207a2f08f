#include "host/rulebook/rule_file.h"

#include "host/rulebook/table_reader.h"
#include "host/text.h"
#include "host/toml_keys.h"

namespace rulebook
{

namespace
{

/// The fields of a key that a table has.
struct KeyFields
{
    std::optional<std::string> partner;
    std::optional<std::string> service;
    std::optional<std::string> client;
    std::optional<std::int64_t> protocol;
    std::optional<std::int64_t> side;

    bool IsEmpty() const { return !partner && !service && !client && !protocol && !side; }
};

KeyFields ReadKey(TableReader& table)
{
    return {table.Text(kPartner), table.Text(kService), table.Text(kClient),
            table.Number(kProtocol), table.Word(kSide, kSides)};
}

std::string Required(TableReader& table, const char* field, const std::optional<std::string>& text,
                     const std::string& example)
{
    if (!text)
    {
        table.Missing(field, example);
    }
    else if (text->empty())
    {
        table.Empty(field);
    }
    return text.value_or(std::string());
}

std::int64_t Required(TableReader& table, const char* field,
                      const std::optional<std::int64_t>& number, const std::string& example)
{
    if (!number)
    {
        table.Missing(field, example);
    }
    return number.value_or(0);
}

/// The key of entry or terms: what it says itself, else what its contract says.
ContractKey KeyOf(TableReader& table, const KeyFields& contract)
{
    const KeyFields own = ReadKey(table);
    const auto chosen =
        [&table](const auto& ours, const auto& theirs, const char* field, const char* example)
    {
        return Required(table, field, ours ? ours : theirs,
                        std::string(example) + " to it or to its contract");
    };
    return {chosen(own.partner, contract.partner, kPartner, "\"…\""),
            chosen(own.service, contract.service, kService, "\"…\""),
            chosen(own.client, contract.client, kClient, "\"…\""),
            chosen(own.protocol, contract.protocol, kProtocol, "9"),
            chosen(own.side, contract.side, kSide, "\"server\"")};
}

Certificate ReadCertificate(TableReader& table)
{
    Certificate certificate;
    certificate.commonName = Required(table, kCommonName, table.Text(kCommonName), "\"…\"");
    certificate.serial = table.Text(kSerial);
    certificate.expires = table.Date(kExpires);
    table.RefuseOthers();
    return certificate;
}

Holder ReadHolder(TableReader& table)
{
    Holder holder;
    holder.huid = Required(table, kHuid, table.Text(kHuid), "\"…\"");
    holder.vpname = table.Text(kPartner);
    holder.firstName = table.Text(kFirstName);
    holder.lastName = table.Text(kLastName);
    holder.opposition = table.Text(kOpposition);
    for (TableReader& certificate : table.Tables(kCertificates))
    {
        holder.certificates.push_back(ReadCertificate(certificate));
    }
    table.RefuseOthers();
    return holder;
}

ContractEntry ReadEntry(TableReader& table, const KeyFields& contract)
{
    ContractEntry entry = {KeyOf(table, contract), table.Switch(kAllHolders),
                           table.Text(kOpposition)};
    table.RefuseOthers();
    return entry;
}

ContractTerms ReadTerms(TableReader& table, const KeyFields& contract)
{
    ContractTerms terms;
    terms.key = KeyOf(table, contract);
    terms.type = Required(table, kType, table.Number(kType), "1");
    terms.profile = table.Word(kProfile, kProfiles);
    terms.allHolders = table.Switch(kAllHolders);
    terms.opposition = table.Text(kOpposition);
    table.RefuseOthers();
    return terms;
}

Rule ReadRule(TableReader& table)
{
    Rule rule = {table.Text(kHolder1), table.Text(kHolder2), table.Switch(kAlone),
                 table.Text(kAmount), table.Word(kLevel, kLevels)};
    table.RefuseOthers();
    return rule;
}

Contract ReadContract(TableReader& table, Problems& problems, const Places& places)
{
    Contract contract;
    contract.cuid = table.Text(kCuid);
    if (contract.cuid && contract.cuid->empty())
    {
        table.Empty(kCuid);
    }
    const KeyFields key = ReadKey(table);
    if (auto entry = table.Table(kEntry); entry)
    {
        contract.entry = ReadEntry(*entry, key);
    }
    for (TableReader& terms : table.Tables(kTerms))
    {
        contract.terms.push_back(ReadTerms(terms, key));
    }
    for (TableReader& rule : table.Tables(kRules))
    {
        contract.rules.push_back(ReadRule(rule));
    }
    table.RefuseOthers();
    const std::size_t line = places.LineOf(table.Path());
    if (!contract.entry && contract.terms.empty() && (contract.rules.empty() || !key.IsEmpty()))
    {
        problems.Add({line, kContractTable,
                      "it has neither terms nor entry, so its partner, service and client would be "
                      "kept nowhere.",
                      "Add terms = [ { type = 1, … } ], a line for each order type."});
    }
    if (!contract.cuid && (contract.entry || !contract.rules.empty()))
    {
        table.Missing(kCuid, "\"…\", under which entry and rules are kept");
    }
    if (!contract.cuid && contract.terms.size() > 1)
    {
        problems.Add(
            {line, kContractTable,
             "without a cuid it is one row of terms that awaits its identifier, and it has "
             "several.",
             "Add its cuid, or write a contract for each."});
    }
    return contract;
}

// 0 when all are.
std::size_t FirstLineThatIsNoUtf8(std::string_view text)
{
    if (host::IsUtf8(text))
    {
        return 0;
    }
    std::size_t line = 1;
    for (std::size_t end = text.find('\n');
         end != std::string_view::npos && host::IsUtf8(text.substr(0, end)); end = text.find('\n'))
    {
        text.remove_prefix(end + 1);
        ++line;
    }
    return line;
}

} // namespace

RuleFile ReadRuleFile(std::string_view toml, Problems& problems)
{
    RuleFile file;
    if (const std::size_t line = FirstLineThatIsNoUtf8(toml); line != 0)
    {
        problems.Add({line, "", "the line is no UTF-8 text.",
                      "Save the file as UTF-8, then check again: nothing was read."});
        return file;
    }
    if (const std::size_t line = host::LineOfKeyWithTooManyParts(toml); line != 0)
    {
        problems.Add({line, "",
                      "a key has more than " + std::to_string(host::kMostKeyParts) + " parts.",
                      "Correct the line, then check again: nothing was read. A field is written "
                      "name = value."});
        return file;
    }
    toml::table root;
    try
    {
        root = toml::parse(toml);
    }
    catch (const toml::parse_error& error)
    {
        problems.Add({error.source().begin.line, "", host::Printable(error.description()) + ".",
                      "Correct the line, then check again: what comes behind it was not read. A "
                      "field is written name = value, a text stands in quotes."});
        return file;
    }
    TableReader top(root, "", file.places, problems);
    for (TableReader& holder : top.Tables(kHolderTable))
    {
        file.book.holders.push_back(ReadHolder(holder));
    }
    for (TableReader& contract : top.Tables(kContractTable))
    {
        file.book.contracts.push_back(ReadContract(contract, problems, file.places));
    }
    top.RefuseOthers();
    return file;
}

} // namespace rulebook
