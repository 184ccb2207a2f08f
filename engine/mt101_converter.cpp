#include "engine/mt101_converter.h"

#include "engine/failure.h"
#include "engine/mt_fields.h"
#include "engine/order_amount.h"
#include "support/format.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr char kDecimalComma = ',';
constexpr std::array<std::string_view, 4> kPreciousMetals = {"XAU", "XAG", "XPD", "XPT"};

// What an ordering customer or beneficiary field holds.
struct Party
{
    std::string account;
    std::string name;
};

// "/account" on the first line, then a name or an identifier; numbered lines "1/NAME" in option F.
Party ReadParty(const MtField& field)
{
    Party party;
    for (const std::string& line : field.lines)
    {
        if (line.empty())
        {
            continue;
        }
        if (line.front() == '/' && party.account.empty() && party.name.empty())
        {
            party.account = line.substr(1);
        }
        else if (party.name.empty())
        {
            party.name = line.starts_with("1/") ? line.substr(2) : line;
        }
    }
    return party;
}

std::string JoinLines(const MtField& field)
{
    std::string text;
    for (const std::string& line : field.lines)
    {
        text += text.empty() ? line : " " + line;
    }
    return text;
}

// "YYMMDD" of this century.
std::string ExecutionDate(const std::string& text)
{
    const bool digits =
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return text.size() == 6 && digits ? "20" + text : std::string();
}

class Mt101
{
public:
    explicit Mt101(ConversionOutput& output) : m_output(output) {}

    void Take(const MtField& field);
    void Finish();
    bool FoundMessage() const noexcept { return m_messages > 0; }

private:
    void BeginMessage(const MtField& field);
    void BeginOrder(const MtField& field);
    void EndOrder();
    void EndMessage();
    void TakeOfMessage(const MtField& field);
    void TakeOfOrder(const MtField& field);
    void TakeAmount(const MtField& field, RawAmount& amount);
    RawAmount CountingAmount();
    void OpenRemittance();
    std::string Record() const;
    void Tell(Finding finding, const std::string& text);

    ConversionOutput& m_output;
    std::uint64_t m_position = 0;
    std::uint64_t m_messages = 0;
    std::uint64_t m_ordersInMessage = 0;
    bool m_inMessage = false;
    bool m_inOrder = false;
    bool m_remittanceOpen = false;
    bool m_oneCurrency = false; // field 21R: all amounts of the message in one currency
    bool m_equivalent = false;
    std::string m_firstCurrency;
    RemittanceHead m_head;
    OrderRow m_order;
    std::string m_orderOwnAccount;
    RawAmount m_amount;
    RawAmount m_orderedAmount; // 33B
};

std::string Mt101::Record() const
{
    return std::to_string(m_messages) + "." + std::to_string(m_ordersInMessage);
}

void Mt101::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(m_position, Record(), finding, text);
}

void Mt101::Take(const MtField& field)
{
    m_position = field.position;
    m_output.SetPosition(m_position);
    if (field.tag == "20")
    {
        BeginMessage(field);
    }
    else if (!m_inMessage)
    {
        return;
    }
    else if (field.tag == "21")
    {
        BeginOrder(field);
    }
    else if (m_inOrder)
    {
        TakeOfOrder(field);
    }
    else
    {
        TakeOfMessage(field);
    }
}

void Mt101::BeginMessage(const MtField& field)
{
    EndMessage();
    ++m_messages;
    m_ordersInMessage = 0;
    m_inMessage = true;
    m_remittanceOpen = false;
    m_oneCurrency = false;
    m_firstCurrency.clear();
    m_head = RemittanceHead();
    m_head.record = std::to_string(m_messages);
    m_head.controlReference = field.lines.front();
    m_head.reference = field.lines.front();
}

void Mt101::TakeOfMessage(const MtField& field)
{
    const std::string_view tag = field.tag;
    if (tag == "30")
    {
        m_head.executionDate = ExecutionDate(field.lines.front());
        if (m_head.executionDate.empty())
        {
            Tell(Finding::FieldMalformed, "Field 30 holds no date YYMMDD: " + field.lines.front());
        }
    }
    else if (tag == "21R")
    {
        m_oneCurrency = true;
        m_head.reference = field.lines.front();
    }
    else if (tag == "50F" || tag == "50G" || tag == "50H")
    {
        const Party party = ReadParty(field);
        m_head.account = party.account;
        m_head.name = party.name;
    }
    else if (tag == "50C" || tag == "50L")
    {
        m_head.sender = field.lines.front();
    }
    else if (tag == "52A" || tag == "52C")
    {
        m_head.bankCode = field.lines.back();
    }
}

void Mt101::OpenRemittance()
{
    if (!m_remittanceOpen)
    {
        m_output.BeginRemittance(m_head);
        m_remittanceOpen = true;
    }
}

void Mt101::BeginOrder(const MtField& field)
{
    EndOrder();
    OpenRemittance();
    ++m_ordersInMessage;
    m_inOrder = true;
    m_equivalent = false;
    m_orderOwnAccount.clear();
    m_amount = RawAmount();
    m_orderedAmount = RawAmount();
    m_order = OrderRow();
    m_order.record = Record();
    m_order.reference = field.lines.front();
    m_order.transactionReference = field.lines.front();
}

void Mt101::TakeOfOrder(const MtField& field)
{
    const std::string_view tag = field.tag;
    if (tag == "32B")
    {
        TakeAmount(field, m_amount);
    }
    else if (tag == "33B")
    {
        TakeAmount(field, m_orderedAmount);
    }
    else if (tag == "23E")
    {
        const std::string& code = field.lines.front();
        m_order.urgent = m_order.urgent || code.starts_with("URGP") || code.starts_with("RTGS");
        m_equivalent = m_equivalent || code.starts_with("EQUI");
    }
    else if (tag == "50F" || tag == "50G" || tag == "50H")
    {
        m_orderOwnAccount = ReadParty(field).account;
    }
    else if (tag == "57A" || tag == "57C" || tag == "57D")
    {
        m_order.bankCode = tag == "57D" ? std::string() : field.lines.back();
        m_order.bankName = tag == "57D" ? JoinLines(field) : std::string();
    }
    else if (tag == "59" || tag == "59A" || tag == "59F")
    {
        const Party party = ReadParty(field);
        m_order.account = party.account;
        m_order.name = party.name;
    }
    else if (tag == "70")
    {
        m_order.label = JoinLines(field);
    }
}

// Three letters, then digits with a decimal comma.
void Mt101::TakeAmount(const MtField& field, RawAmount& amount)
{
    constexpr std::size_t kCodeLength = 3;
    const std::string& text = field.lines.front();
    const RawAmount read{text.size() > kCodeLength ? text.substr(kCodeLength) : std::string(),
                         text.substr(0, kCodeLength), true};
    if (!amount.present)
    {
        amount = read;
        return;
    }
    Tell(Finding::RecordMalformed,
         "Second field " + field.tag + " in one order; the larger one counts");
    KeepLarger(amount, read, kDecimalComma);
}

// With EQUI the amount of 32B is zero and the ordered one stands in 33B.
RawAmount Mt101::CountingAmount()
{
    if (!m_equivalent || !m_orderedAmount.present)
    {
        return m_amount;
    }
    RawAmount amount = m_orderedAmount;
    ExactDecimal transferred; // stays zero when it is no number
    ExactDecimal::Parse(m_amount.text, kDecimalComma, transferred);
    if (!transferred.IsZero())
    {
        Tell(Finding::FieldMalformed,
             "Field 32B must be zero with EQUI; the larger of 32B and 33B counts");
        KeepLarger(amount, m_amount, kDecimalComma);
    }
    return amount;
}

void Mt101::EndOrder()
{
    if (!m_inOrder)
    {
        return;
    }
    m_inOrder = false;
    if (!ReadAmount(CountingAmount(), kDecimalComma, m_output, m_position, m_order))
    {
        return;
    }
    if (std::find(kPreciousMetals.begin(), kPreciousMetals.end(), m_order.currency) !=
        kPreciousMetals.end())
    {
        Tell(Finding::CurrencyUnknown, "Currency " + m_order.currency + " is not allowed here");
    }
    if (m_firstCurrency.empty())
    {
        m_firstCurrency = m_order.currency;
    }
    else if (m_oneCurrency && m_order.currency != m_firstCurrency)
    {
        Tell(Finding::FieldMalformed, "Field 21R demands one currency; " + m_order.currency +
                                          " differs from " + m_firstCurrency);
    }
    m_order.executionDate = m_head.executionDate;
    m_order.debitAccount = m_orderOwnAccount.empty() ? m_head.account : m_orderOwnAccount;
    m_order.creditAccount = m_order.account;
    m_output.AddOrder(m_order);
}

void Mt101::EndMessage()
{
    if (!m_inMessage)
    {
        return;
    }
    EndOrder();
    if (m_ordersInMessage == 0)
    {
        Tell(Finding::EmptyGroup, "Message without an order");
    }
    m_output.EndRemittance();
    m_inMessage = false;
}

void Mt101::Finish()
{
    EndMessage();
}

} // namespace

void ConvertMt101(OrderFile& file, ConversionOutput& output)
{
    MtFieldSource fields(file);
    Mt101 messages(output);
    MtField field;
    while (fields.Next(field))
    {
        messages.Take(field);
    }
    messages.Finish();
    if (fields.HasTextBehindEnd())
    {
        output.AddError(fields.Number(), std::to_string(fields.Number()), Finding::RecordOutOfPlace,
                        "Text behind the end-of-file character is not read");
    }
    if (!messages.FoundMessage())
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s holds no MT 101 message: no field :20:",
                                       file.Path().c_str()));
    }
}

} // namespace engine
