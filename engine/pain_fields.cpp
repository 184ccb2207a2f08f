#include "engine/pain_fields.h"

#include <string>
#include <vector>

namespace engine
{

namespace
{

using Table = PathTable<PainField>;
using Entries = std::vector<Table::Entry>;

void Add(Entries& entries, const std::string& path, PainField field)
{
    entries.push_back({path, field});
}

// BBAN, UPIC and PrtryAcct stood in the first versions.
void AddAccount(Entries& entries, const std::string& account, PainField iban, PainField other)
{
    Add(entries, account + "/Id/IBAN", iban);
    for (const char* const form : {"/Id/Othr/Id", "/Id/BBAN", "/Id/UPIC", "/Id/PrtryAcct/Id"})
    {
        Add(entries, account + form, other);
    }
}

// A bank may be named in several forms at once. CmbndId and PrtryId stood in the first versions.
void AddBank(Entries& entries, const std::string& agent, PainField code, PainField other)
{
    for (const char* const form : {"/BICFI", "/BIC", "/CmbndId/BIC"})
    {
        Add(entries, agent + "/FinInstnId" + form, code);
    }
    for (const char* const form : {"/ClrSysMmbId/MmbId", "/ClrSysMmbId/Id", "/Othr/Id",
                                   "/CmbndId/ClrSysMmbId/Id", "/PrtryId/Id"})
    {
        Add(entries, agent + "/FinInstnId" + form, other);
    }
}

void AddBankName(Entries& entries, const std::string& agent, PainField name)
{
    for (const char* const form : {"/Nm", "/NmAndAdr/Nm", "/CmbndId/Nm"})
    {
        Add(entries, agent + "/FinInstnId" + form, name);
    }
}

void AddPaymentType(Entries& entries, const std::string& owner, PainField urgency)
{
    for (const char* const form : {"/InstrPrty", "/SvcLvl/Cd", "/LclInstrm/Cd"})
    {
        Add(entries, owner + "/PmtTpInf" + form, urgency);
    }
}

void AddHeader(Entries& entries)
{
    Add(entries, "GrpHdr", PainField::GroupHeader);
    Add(entries, "GrpHdr/MsgId", PainField::MessageId);
    Add(entries, "GrpHdr/NbOfTxs", PainField::FileCount);
    Add(entries, "GrpHdr/CtrlSum", PainField::FileSum);
    Add(entries, "GrpHdr/InitgPty/Nm", PainField::SenderName);
}

void AddGroup(Entries& entries, const std::string& own)
{
    Add(entries, "PmtInf", PainField::Group);
    Add(entries, "PmtInf/PmtInfId", PainField::GroupId);
    Add(entries, "PmtInf/NbOfTxs", PainField::GroupCount);
    Add(entries, "PmtInf/CtrlSum", PainField::GroupSum);
    AddPaymentType(entries, "PmtInf", PainField::GroupUrgency);
    Add(entries, "PmtInf/" + own + "/Nm", PainField::OwnName);
    AddAccount(entries, "PmtInf/" + own + "Acct", PainField::OwnIban, PainField::OwnOtherAccount);
    Add(entries, "PmtInf/" + own + "Acct/Ccy", PainField::OwnAccountCurrency);
    AddBank(entries, "PmtInf/" + own + "Agt", PainField::OwnBank, PainField::OwnOtherBank);
}

void AddOrder(Entries& entries, const std::string& order, const std::string& other)
{
    Add(entries, order, PainField::Order);
    Add(entries, order + "/PmtId/EndToEndId", PainField::EndToEndId);
    Add(entries, order + "/PmtId/InstrId", PainField::InstructionId);
    AddPaymentType(entries, order, PainField::OrderUrgency);
    Add(entries, order + "/" + other + "/Nm", PainField::Name);
    AddAccount(entries, order + "/" + other + "Acct", PainField::Iban, PainField::OtherAccount);
    AddBank(entries, order + "/" + other + "Agt", PainField::Bank, PainField::OtherBank);
    AddBankName(entries, order + "/" + other + "Agt", PainField::BankName);
    Add(entries, order + "/RmtInf/Ustrd", PainField::RemittanceText);
    Add(entries, order + "/RmtInf/Strd/CdtrRefInf/Ref", PainField::RemittanceReference);
    Add(entries, order + "/RmtInf/Strd/CdtrRefInf/CdtrRef", PainField::RemittanceReference);
}

Table CreditTransferTable()
{
    Entries entries;
    AddHeader(entries);
    AddGroup(entries, "Dbtr");
    // A plain date up to version 07, a choice from 08 on.
    for (const char* const form : {"", "/Dt", "/DtTm"})
    {
        Add(entries, std::string("PmtInf/ReqdExctnDt") + form, PainField::ExecutionDate);
    }
    const std::string order = "PmtInf/CdtTrfTxInf";
    AddOrder(entries, order, "Cdtr");
    Add(entries, order + "/Amt/InstdAmt", PainField::InstructedAmount);
    Add(entries, order + "/Amt/EqvtAmt/Amt", PainField::EquivalentAmount);
    return Table(entries);
}

Table DirectDebitTable()
{
    Entries entries;
    AddHeader(entries);
    AddGroup(entries, "Cdtr");
    Add(entries, "PmtInf/ReqdColltnDt", PainField::ExecutionDate);
    for (const char* const form : {"Othr/Id", "OthrId/Id"})
    {
        Add(entries, std::string("PmtInf/CdtrSchmeId/Id/PrvtId/") + form, PainField::CreditorId);
    }
    const std::string order = "PmtInf/DrctDbtTxInf";
    AddOrder(entries, order, "Dbtr");
    Add(entries, order + "/InstdAmt", PainField::InstructedAmount);
    return Table(entries);
}

} // namespace

const PathTable<PainField>& PainPaths(PainMessage message)
{
    static const Table transfers = CreditTransferTable();
    static const Table debits = DirectDebitTable();
    return message == PainMessage::CreditTransfer ? transfers : debits;
}

bool IsPainMessageElement(PainMessage message, std::string_view name)
{
    // The first versions named the element after the message.
    if (message == PainMessage::CreditTransfer)
    {
        return name == "CstmrCdtTrfInitn" || name.starts_with("pain.001.");
    }
    return name == "CstmrDrctDbtInitn" || name.starts_with("pain.008.");
}

} // namespace engine
