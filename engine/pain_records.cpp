#include "engine/pain_records.h"

#include "engine/pain_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace engine
{

namespace
{

// What stands for a bank that the sender does not know.
constexpr const char* kNotProvided = "NOTPROVIDED";

enum class Form
{
    First,
    Other, ///< stands in only where the first form is missing
};

// Which text of a record a field is.
template <typename Record>
struct TextOf
{
    PainField field;
    std::string Record::*text;
    Form form;
};

constexpr TextOf<RemittanceHead> kGroupTexts[] = {
    {PainField::GroupId, &RemittanceHead::reference, Form::First},
    {PainField::OwnName, &RemittanceHead::name, Form::First},
    {PainField::OwnIban, &RemittanceHead::account, Form::First},
    {PainField::OwnOtherAccount, &RemittanceHead::account, Form::Other},
    {PainField::OwnAccountCurrency, &RemittanceHead::currency, Form::First},
    {PainField::OwnBank, &RemittanceHead::bankCode, Form::First},
    {PainField::OwnOtherBank, &RemittanceHead::bankCode, Form::Other},
    {PainField::CreditorId, &RemittanceHead::sender, Form::First},
};

constexpr TextOf<OrderRow> kOrderTexts[] = {
    {PainField::EndToEndId, &OrderRow::reference, Form::First},
    {PainField::InstructionId, &OrderRow::transactionReference, Form::First},
    {PainField::Name, &OrderRow::name, Form::First},
    {PainField::Iban, &OrderRow::account, Form::First},
    {PainField::OtherAccount, &OrderRow::account, Form::Other},
    {PainField::Bank, &OrderRow::bankCode, Form::First},
    {PainField::OtherBank, &OrderRow::bankCode, Form::Other},
    {PainField::BankName, &OrderRow::bankName, Form::First},
    {PainField::RemittanceReference, &OrderRow::label, Form::Other},
};

template <typename Record, std::size_t Size>
void TakeText(const TextOf<Record> (&texts)[Size], Record& record, PainField field,
              std::string_view text)
{
    for (const TextOf<Record>& entry : texts)
    {
        if (entry.field != field)
        {
            continue;
        }
        std::string& kept = record.*entry.text;
        if (entry.form == Form::First || (kept.empty() && text != kNotProvided))
        {
            kept = text;
        }
        return;
    }
}

// A high priority, a service level of the same day, an instant payment: no code means anything
// else in another of these fields.
bool IsUrgent(std::string_view code)
{
    constexpr std::array<std::string_view, 5> kUrgent = {"HIGH", "URGP", "SDVA", "PRPT", "INST"};
    return std::find(kUrgent.begin(), kUrgent.end(), code) != kUrgent.end();
}

} // namespace

void PainGroup::Take(PainField field, std::string_view text)
{
    switch (field)
    {
    case PainField::GroupCount:
        totals.StateCount(text);
        break;
    case PainField::GroupSum:
        totals.StateSum(text);
        break;
    case PainField::GroupUrgency:
        urgent = urgent || IsUrgent(text);
        break;
    default:
        TakeText(kGroupTexts, head, field, text);
        break;
    }
}

void PainOrder::Take(PainField field, std::string_view text)
{
    switch (field)
    {
    case PainField::OrderUrgency:
        row.urgent = row.urgent || IsUrgent(text);
        break;
    case PainField::RemittanceText:
        row.label.append(row.label.empty() ? "" : " ").append(text);
        row.label.resize(Shortened(row.label).size());
        break;
    default:
        TakeText(kOrderTexts, row, field, text);
        break;
    }
}

} // namespace engine
