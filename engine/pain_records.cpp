#include "engine/pain_records.h"

#include "engine/pain_text.h"

namespace engine
{

namespace
{

// What stands for a bank that the sender does not know.
constexpr const char* kNotProvided = "NOTPROVIDED";

// Another form of what may have been given already.
void TakeWhereMissing(std::string& kept, const std::string& text)
{
    if (kept.empty() && text != kNotProvided)
    {
        kept = text;
    }
}

// A high priority, a service level of the same day, or an instant payment.
bool IsUrgent(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::GroupPriority:
    case PainField::OrderPriority:
        return text == "HIGH";
    case PainField::GroupService:
    case PainField::OrderService:
        return text == "URGP" || text == "SDVA" || text == "PRPT";
    case PainField::GroupInstrument:
    case PainField::OrderInstrument:
        return text == "INST";
    default:
        return false;
    }
}

} // namespace

void PainGroup::Take(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::GroupId:
        head.reference = text;
        break;
    case PainField::GroupCount:
        totals.StateCount(text);
        break;
    case PainField::GroupSum:
        totals.StateSum(text);
        break;
    case PainField::GroupPriority:
    case PainField::GroupService:
    case PainField::GroupInstrument:
        urgent = urgent || IsUrgent(field, text);
        break;
    case PainField::OwnName:
        head.name = text;
        break;
    case PainField::OwnIban:
        head.account = text;
        break;
    case PainField::OwnOtherAccount:
        TakeWhereMissing(head.account, text);
        break;
    case PainField::OwnAccountCurrency:
        head.currency = text;
        break;
    case PainField::OwnBank:
        head.bankCode = text;
        break;
    case PainField::OwnOtherBank:
        TakeWhereMissing(head.bankCode, text);
        break;
    case PainField::CreditorId:
        head.sender = text;
        break;
    default:
        break;
    }
}

void PainOrder::Take(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::EndToEndId:
        row.reference = text;
        break;
    case PainField::InstructionId:
        row.transactionReference = text;
        break;
    case PainField::OrderPriority:
    case PainField::OrderService:
    case PainField::OrderInstrument:
        row.urgent = row.urgent || IsUrgent(field, text);
        break;
    case PainField::Name:
        row.name = text;
        break;
    case PainField::Iban:
        row.account = text;
        break;
    case PainField::OtherAccount:
        TakeWhereMissing(row.account, text);
        break;
    case PainField::Bank:
        row.bankCode = text;
        break;
    case PainField::OtherBank:
        TakeWhereMissing(row.bankCode, text);
        break;
    case PainField::BankName:
        row.bankName = text;
        break;
    case PainField::RemittanceText:
        row.label += row.label.empty() ? text : " " + text;
        row.label = Shortened(row.label);
        break;
    case PainField::RemittanceReference:
        if (row.label.empty())
        {
            row.label = text;
        }
        break;
    default:
        break;
    }
}

} // namespace engine
