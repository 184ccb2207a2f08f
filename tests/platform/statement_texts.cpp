#include "tests/platform/statement_texts.h"

#include "rules/rulesign.h"
#include "rules/statements.h"
#include "services/event_statement.h"
#include "signers/holder_statements.h"
#include "support/codepage.h"

#include <fstream>
#include <sstream>

namespace
{

void WriteLine(std::ofstream& file, const std::wstring& statement)
{
    file << support::Utf8FromWide(statement) << '\n';
}

void FillWithSigners(TArray<signerInfo>& list, const wchar_t* signerList)
{
    std::wistringstream names{std::wstring(signerList)};
    std::wstring name;
    while (std::getline(names, name, L';'))
    {
        signerInfo signer;
        signer.certificate = name.c_str();
        list.Add(signer);
    }
}

ruleSign DecisionOn(const TArray<signerInfo>& list)
{
    ruleSign decision;
    decision.reasonText = L"Montant d\u00E9pass\u00E9 par l'ordre";
    decision.message = decision.reasonText;
    decision.signer1 = {list.GetAt(0)->certificate, L"L'H\u00E9ritier", L"Zo\u00EB"};
    decision.signer2 = {list.GetAt(list.GetCount() - 1)->certificate, L"Stra\u00DFe", L"J\u00F6rg"};
    decision.controlType = 1;
    decision.status = 2;
    return decision;
}

services::EventRecord EventOf(const ruleSign& decision)
{
    services::EventRecord event;
    event.key = "01234567-89ab-4cde-8f01-23456789abcd";
    event.dateTime = "2026-03-29 14:05:09";
    event.level = 1;
    event.source = L"RULSGN";
    event.text = decision.reasonText.SafeGetString();
    event.attachPath = L"/var/log/h\u00F4te.log";
    return event;
}

template <typename Append, typename... Arguments>
std::wstring Appended(Append append, const Arguments&... arguments)
{
    std::wstring statement;
    append(statement, arguments...);
    return statement;
}

} // namespace

void WriteStatements(const std::string& path, const rules::ContractKey& contract,
                     const rules::OrderFacts& order, const wchar_t* signerList)
{
    TArray<signerInfo> list(128);
    FillWithSigners(list, signerList);
    const ruleSign decision = DecisionOn(list);
    const rules::HistoryFacts facts = {contract, order, signerList, 2};
    std::ofstream file(path, std::ios::binary);
    WriteLine(file, rules::RuleQuery(contract).SafeGetString());
    WriteLine(file, rules::ContractQuery(contract).SafeGetString());
    for (int at = 0; at < list.GetCount(); ++at)
    {
        WriteLine(file, Appended(signers::AppendHoldersOfCertificate,
                                 list.GetAt(at)->certificate.SafeGetString()));
    }
    WriteLine(file,
              Appended(signers::AppendCertificatesOfHolder, "HOLDER01", list, list.GetCount()));
    rules::HistoryFinding finding;
    rules::FindingOf(facts, decision, finding);
    WriteLine(file, Appended(rules::AppendHistoryRow, facts, finding));
    WriteLine(file, Appended(rules::AppendHistoryRow, facts,
                             rules::FindingOfNoRule(decision.reasonText)));
    WriteLine(file, services::EventInsertStatement(EventOf(decision)));
}
