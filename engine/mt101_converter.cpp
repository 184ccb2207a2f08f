#include "engine/mt101_converter.h"

#include "engine/cfonb_date.h"
#include "engine/failure.h"
#include "engine/mt_amounts.h"
#include "engine/mt_chain.h"
#include "engine/mt_fields.h"
#include "engine/mt_parties.h"
#include "support/format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr std::array<std::string_view, 4> kPreciousMetals = {"XAU", "XAG", "XPD", "XPT"};

bool IsPreciousMetal(std::string_view currency)
{
    return std::find(kPreciousMetals.begin(), kPreciousMetals.end(), currency) !=
           kPreciousMetals.end();
}

// Field 50 in these options holds the debit account; it may stand before the orders or in each.
bool IsOrderingCustomer(std::string_view tag)
{
    return tag == "50F" || tag == "50G" || tag == "50H";
}

class Mt101
{
public:
    explicit Mt101(ConversionOutput& output) : m_output(output) {}

    void Take(const MtField& field);
    void Finish();
    bool FoundMessage() const noexcept { return m_found; }

private:
    void MoveTo(std::uint64_t position);
    void BeginMessage(std::uint64_t position, const std::string& reference);
    void BeginOrder(std::uint64_t position, const std::string& reference);
    void BeginUnannounced(const MtField& field);
    void EndOrder();
    void EndMessage();
    void TakeOfMessage(const MtField& field);
    void TakeChainIndex(const std::string& text);
    void TakeExecutionDate(const std::string& text);
    void TakeOfOrder(const MtField& field);
    void TakeInstruction(const std::string& code);
    void TakeOwnAccount(const MtField& field);
    void ReadCountingAmount();
    void CheckCurrency();
    void OpenRemittance();
    std::string Record() const;
    void Tell(Finding finding, const std::string& text);
    void Tell(const std::optional<MtProblem>& problem);

    ConversionOutput& m_output;
    std::uint64_t m_position = 0; // line that error rows name
    bool m_found = false;         // a field 20
    std::uint64_t m_messages = 0;
    std::uint64_t m_messagePosition = 0;
    std::uint64_t m_ordersInMessage = 0;
    std::uint64_t m_orderPosition = 0;
    MtChain m_chain;
    bool m_inMessage = false;
    bool m_inOrder = false;
    bool m_remittanceOpen = false;
    bool m_oneCurrency = false; // field 21R: all fields 32B of the message in one currency
    std::string m_firstCurrency;
    RemittanceHead m_head;
    OrderRow m_order;
    std::string m_orderOwnAccount;
    MtOrderAmounts m_amounts;
};

std::string Mt101::Record() const
{
    return std::to_string(m_messages) + "." + std::to_string(m_ordersInMessage);
}

void Mt101::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(m_position, Record(), finding, text);
}

void Mt101::Tell(const std::optional<MtProblem>& problem)
{
    if (problem.has_value())
    {
        Tell(problem->finding, problem->text);
    }
}

void Mt101::MoveTo(std::uint64_t position)
{
    m_position = position;
    m_output.SetPosition(position);
}

void Mt101::Take(const MtField& field)
{
    MoveTo(field.position);
    const std::string_view tag = field.tag;
    if (tag == "20")
    {
        m_found = true;
        BeginMessage(field.position, field.lines.front());
        return;
    }
    if (!m_inOrder && (tag == "32B" || (!m_inMessage && tag == "21")))
    {
        BeginUnannounced(field);
    }
    if (!m_inMessage)
    {
        return;
    }
    if (tag == "21")
    {
        BeginOrder(field.position, field.lines.front());
    }
    else
    {
        m_inOrder ? TakeOfOrder(field) : TakeOfMessage(field);
    }
}

// An order whose opening fields are missing counts all the same: a limit must not be slipped under
// by leaving them out.
void Mt101::BeginUnannounced(const MtField& field)
{
    if (!m_inMessage)
    {
        BeginMessage(field.position, "");
        Tell(Finding::FieldMissing, "Order without a field 20 before it");
    }
    if (field.tag == "32B")
    {
        BeginOrder(field.position, "");
        Tell(Finding::FieldMissing, "Order without a field 21");
    }
}

void Mt101::BeginMessage(std::uint64_t position, const std::string& reference)
{
    EndMessage();
    MoveTo(position);
    m_messagePosition = position;
    ++m_messages;
    m_ordersInMessage = 0;
    m_inMessage = true;
    m_remittanceOpen = false;
    m_oneCurrency = false;
    m_firstCurrency.clear();
    m_head = RemittanceHead();
    m_head.record = std::to_string(m_messages);
    m_head.controlReference = reference;
    m_head.reference = reference;
}

void Mt101::TakeOfMessage(const MtField& field)
{
    const std::string_view tag = field.tag;
    if (tag == "28D")
    {
        TakeChainIndex(field.lines.front());
    }
    else if (tag == "30")
    {
        TakeExecutionDate(field.lines.front());
    }
    else if (tag == "21R")
    {
        m_oneCurrency = true;
        m_head.reference = field.lines.front();
    }
    else if (IsOrderingCustomer(tag))
    {
        const MtParty party = ReadParty(field);
        m_head.account = party.account;
        m_head.name = party.name;
    }
    else if (tag == "50C" || tag == "50L")
    {
        m_head.sender = field.lines.front();
    }
    else if (tag == "52A" || tag == "52C")
    {
        m_head.bankCode = ReadBank(field).code;
    }
}

void Mt101::TakeChainIndex(const std::string& text)
{
    switch (m_chain.Take(text))
    {
    case MtChain::Result::Follows:
        break;
    case MtChain::Result::OutOfOrder:
        Tell(Finding::MessageChain,
             "Message " + m_chain.Position() + " does not continue those before it");
        break;
    case MtChain::Result::Malformed:
        Tell(Finding::FieldMalformed, "Field 28D holds no index of a chain: " + text);
        break;
    }
}

// "YYMMDD" of this century.
void Mt101::TakeExecutionDate(const std::string& text)
{
    m_head.executionDate = DateOfFourDigitYear("20" + text);
    if (m_head.executionDate.empty())
    {
        Tell(Finding::FieldMalformed, "Field 30 holds no date YYMMDD: " + text);
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

void Mt101::BeginOrder(std::uint64_t position, const std::string& reference)
{
    EndOrder();
    MoveTo(position);
    OpenRemittance();
    m_orderPosition = position;
    ++m_ordersInMessage;
    m_inOrder = true;
    m_orderOwnAccount.clear();
    m_amounts = MtOrderAmounts();
    m_order = OrderRow();
    m_order.record = Record();
    m_order.reference = reference;
    m_order.transactionReference = reference;
}

void Mt101::TakeOfOrder(const MtField& field)
{
    const std::string_view tag = field.tag;
    if (tag == "32B" || tag == "33B")
    {
        Tell(m_amounts.Take(field));
    }
    else if (tag == "23E")
    {
        TakeInstruction(field.lines.front());
    }
    else if (IsOrderingCustomer(tag))
    {
        TakeOwnAccount(field);
    }
    else if (tag == "57A" || tag == "57C" || tag == "57D")
    {
        const MtBank bank = ReadBank(field);
        m_order.bankCode = bank.code;
        m_order.bankName = bank.name;
    }
    else if (tag == "59" || tag == "59A" || tag == "59F")
    {
        const MtParty party = ReadParty(field);
        m_order.account = party.account;
        m_order.name = party.name;
    }
    else if (tag == "70")
    {
        m_order.label = JoinLines(field);
    }
}

void Mt101::TakeInstruction(const std::string& code)
{
    m_order.urgent = m_order.urgent || code.starts_with("URGP") || code.starts_with("RTGS");
    m_amounts.TakeInstruction(code);
}

void Mt101::TakeOwnAccount(const MtField& field)
{
    m_orderOwnAccount = ReadParty(field).account;
    if (!m_head.account.empty())
    {
        Tell(Finding::RecordOutOfPlace,
             "Field " + field.tag + " stands before the orders and in one of them");
    }
}

void Mt101::CheckCurrency()
{
    if (IsPreciousMetal(m_order.currency))
    {
        Tell(Finding::CurrencyUnknown, "Currency " + m_order.currency + " is not allowed here");
    }
    if (m_firstCurrency.empty())
    {
        m_firstCurrency = m_amounts.TransferCurrency();
    }
    else if (m_oneCurrency && m_amounts.TransferCurrency() != m_firstCurrency)
    {
        Tell(Finding::FieldMalformed, "Field 21R demands one currency; " +
                                          m_amounts.TransferCurrency() + " differs from " +
                                          m_firstCurrency);
    }
}

void Mt101::ReadCountingAmount()
{
    std::optional<MtProblem> problem;
    const RawAmount amount = m_amounts.Counting(problem);
    Tell(problem);
    ReadAmount(amount, MtOrderAmounts::kDecimalComma, m_output, m_position, m_order);
}

void Mt101::EndOrder()
{
    if (!m_inOrder)
    {
        return;
    }
    m_inOrder = false;
    MoveTo(m_orderPosition);
    ReadCountingAmount();
    CheckCurrency();
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
    MoveTo(m_messagePosition);
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
    if (m_chain.IsOpen())
    {
        Tell(Finding::MessageChain,
             "The last message is " + m_chain.Position() + " of its chain: others are missing");
    }
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
    const auto tell = [&output](std::uint64_t line, Finding finding, const char* text)
    { output.AddError(line, std::to_string(line), finding, text); };
    if (fields.UnclosedAt() != 0)
    {
        tell(fields.UnclosedAt(), Finding::FieldMissing,
             "The message is not closed by -}: it may be cut");
    }
    if (fields.HasTextBehindEnd())
    {
        tell(fields.Number(), Finding::RecordOutOfPlace,
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
