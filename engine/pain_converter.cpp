#include "engine/pain_converter.h"

#include "engine/control_totals.h"
#include "engine/failure.h"
#include "engine/order_amount.h"
#include "engine/pain_text.h"
#include "engine/xml_stream.h"
#include "support/format.h"

#include <algorithm>
#include <array>
#include <string>

namespace engine
{

namespace
{

// Texts that are compared or added: cut, they would be others.
bool IsNumber(PainField field)
{
    constexpr std::array<PainField, 6> kNumbers = {
        PainField::FileCount, PainField::FileSum,          PainField::GroupCount,
        PainField::GroupSum,  PainField::InstructedAmount, PainField::EquivalentAmount};
    return std::find(kNumbers.begin(), kNumbers.end(), field) != kNumbers.end();
}

class PainHandler final : public XmlHandler
{
public:
    PainHandler(PainMessage message, ConversionOutput& output)
        : m_message(message), m_paths(PainPaths(message)), m_output(output)
    {
    }

    void StartElement(std::string_view name, const Attributes& attributes) override;
    void Characters(std::string_view text) override;
    void EndElement() override;

    bool FoundMessage() const noexcept { return m_messages > 0; }

private:
    using Paths = PathTable<PainField>;

    void BeginMessage();
    void EndMessage();
    void BeginGroup();
    void EndGroup();
    void BeginOrder();
    void EndOrder();
    void Store(PainField field);
    void StoreOfFile(PainField field, const std::string& text);
    void StoreOfGroup(PainField field, const std::string& text);
    void StoreOfOrder(PainField field, const std::string& text);
    void TakeAmount(const std::string& text);
    void OpenRemittance();
    std::string OrderRecord() const;
    std::string GroupRecord() const;

    PainMessage m_message;
    const Paths& m_paths;
    ConversionOutput& m_output;

    // Where the document stands: outside a message, at a node of the table, or `m_skipped` levels
    // below an element that the table does not name.
    bool m_inMessage = false;
    Paths::Node m_node = Paths::kRoot;
    unsigned m_skipped = 0;
    std::string m_text;

    std::uint64_t m_messages = 0;
    std::uint64_t m_group = 0;
    std::uint64_t m_orderInGroup = 0;
    ControlTotals m_fileTotals;
    ControlTotals m_groupTotals;
    std::string m_sender;
    std::string m_messageId;

    RemittanceHead m_head;
    bool m_remittanceOpen = false;
    bool m_groupUrgent = false;
    OrderRow m_order;
    bool m_orderUrgent = false;
    std::string m_amountCurrency; // of the amount being read
    RawAmount m_amount;
};

std::string PainHandler::GroupRecord() const
{
    return std::to_string(m_group);
}

std::string PainHandler::OrderRecord() const
{
    return std::to_string(m_group) + "." + std::to_string(m_orderInGroup);
}

void PainHandler::StartElement(std::string_view name, const Attributes& attributes)
{
    m_output.SetPosition(m_line);
    if (!m_inMessage)
    {
        if (IsPainMessageElement(m_message, name))
        {
            BeginMessage();
        }
        return;
    }
    const Paths::Node child = m_skipped > 0 ? Paths::kNowhere : m_paths.Child(m_node, name);
    if (child == Paths::kNowhere)
    {
        ++m_skipped;
        return;
    }
    m_node = child;
    m_text.clear();
    switch (m_paths.FieldOf(child))
    {
    case PainField::Group:
        BeginGroup();
        break;
    case PainField::Order:
        BeginOrder();
        break;
    case PainField::InstructedAmount:
    case PainField::EquivalentAmount:
        m_amountCurrency = Shortened(Trimmed(Narrow(attributes.Find("Ccy"))));
        break;
    default:
        break;
    }
}

void PainHandler::Characters(std::string_view text)
{
    if (m_inMessage && m_skipped == 0 && m_paths.FieldOf(m_node) != PainField::None)
    {
        m_text += text;
    }
}

void PainHandler::EndElement()
{
    m_output.SetPosition(m_line);
    if (!m_inMessage)
    {
        return;
    }
    if (m_skipped > 0)
    {
        --m_skipped;
        return;
    }
    if (m_node == Paths::kRoot)
    {
        EndMessage();
        return;
    }
    const PainField field = m_paths.FieldOf(m_node);
    m_node = m_paths.Parent(m_node);
    switch (field)
    {
    case PainField::Group:
        EndGroup();
        break;
    case PainField::Order:
        EndOrder();
        break;
    default:
        Store(field);
        break;
    }
    m_text.clear();
}

void PainHandler::BeginMessage()
{
    m_inMessage = true;
    m_node = Paths::kRoot;
    ++m_messages;
    m_fileTotals = ControlTotals();
    m_sender.clear();
    m_messageId.clear();
}

void PainHandler::EndMessage()
{
    m_inMessage = false;
    m_fileTotals.Compare(m_output, m_line, m_messageId, {Finding::HeaderCount, Finding::HeaderSum},
                         "file");
}

void PainHandler::BeginGroup()
{
    ++m_group;
    m_orderInGroup = 0;
    m_groupTotals = ControlTotals();
    m_head = RemittanceHead();
    m_head.record = GroupRecord();
    m_head.sender = m_sender;
    m_head.controlReference = m_messageId;
    m_remittanceOpen = false;
    m_groupUrgent = false;
}

// The head's elements stand before the first order.
void PainHandler::OpenRemittance()
{
    if (!m_remittanceOpen)
    {
        m_output.BeginRemittance(m_head);
        m_remittanceOpen = true;
    }
}

void PainHandler::EndGroup()
{
    OpenRemittance();
    m_output.EndRemittance();
    if (m_orderInGroup == 0)
    {
        m_output.AddError(m_line, GroupRecord(), Finding::EmptyGroup,
                          "Payment group without an order");
    }
    m_groupTotals.Compare(m_output, m_line, GroupRecord(), {Finding::GroupCount, Finding::GroupSum},
                          "payment group");
}

void PainHandler::BeginOrder()
{
    OpenRemittance();
    ++m_orderInGroup;
    m_order = OrderRow();
    m_order.record = OrderRecord();
    m_orderUrgent = false;
    m_amount = RawAmount();
}

void PainHandler::EndOrder()
{
    m_fileTotals.CountOrder();
    m_groupTotals.CountOrder();
    if (!ReadAmount(m_amount, '.', m_output, m_line, m_order))
    {
        return;
    }
    m_fileTotals.Add(m_order.amount);
    m_groupTotals.Add(m_order.amount);
    m_order.urgent = m_orderUrgent || m_groupUrgent;
    m_order.executionDate = m_head.executionDate;
    const bool transfer = m_message == PainMessage::CreditTransfer;
    m_order.debitAccount = transfer ? m_head.account : m_order.account;
    m_order.creditAccount = transfer ? m_order.account : m_head.account;
    m_output.AddOrder(m_order);
}

void PainHandler::TakeAmount(const std::string& text)
{
    const RawAmount amount{text, m_amountCurrency, true};
    if (!m_amount.present)
    {
        m_amount = amount;
        return;
    }
    m_output.AddError(m_line, OrderRecord(), Finding::RecordMalformed,
                      "Second amount in one order; the larger one counts");
    KeepLarger(m_amount, amount, '.');
}

void PainHandler::Store(PainField field)
{
    if (field == PainField::None)
    {
        return;
    }
    const std::string whole = Trimmed(Narrow(m_text));
    const std::string text = IsNumber(field) ? whole : Shortened(whole);
    StoreOfFile(field, text);
    StoreOfGroup(field, text);
    StoreOfOrder(field, text);
}

void PainHandler::StoreOfFile(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::MessageId:
        m_messageId = text;
        break;
    case PainField::FileCount:
        m_fileTotals.StateCount(text);
        break;
    case PainField::FileSum:
        m_fileTotals.StateSum(text);
        break;
    case PainField::SenderName:
        m_sender = text;
        break;
    default:
        break;
    }
}

void PainHandler::StoreOfGroup(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::GroupId:
        m_head.reference = text;
        break;
    case PainField::GroupCount:
        m_groupTotals.StateCount(text);
        break;
    case PainField::GroupSum:
        m_groupTotals.StateSum(text);
        break;
    case PainField::GroupPriority:
        m_groupUrgent = m_groupUrgent || text == "HIGH";
        break;
    case PainField::GroupService:
        m_groupUrgent = m_groupUrgent || IsUrgentService(text);
        break;
    case PainField::GroupInstrument:
        m_groupUrgent = m_groupUrgent || text == "INST";
        break;
    case PainField::ExecutionDate:
        // The choice of later versions closes after its child: an empty text is no date.
        m_head.executionDate = text.empty() ? m_head.executionDate : PlainDate(text);
        break;
    case PainField::OwnName:
        m_head.name = text;
        break;
    case PainField::OwnAccount:
        m_head.account = text;
        break;
    case PainField::OwnAccountCurrency:
        m_head.currency = text;
        break;
    case PainField::OwnBank:
        m_head.bankCode = text;
        break;
    default:
        break;
    }
}

void PainHandler::StoreOfOrder(PainField field, const std::string& text)
{
    switch (field)
    {
    case PainField::EndToEndId:
        m_order.reference = text;
        break;
    case PainField::InstructionId:
        m_order.transactionReference = text;
        break;
    case PainField::OrderPriority:
        m_orderUrgent = m_orderUrgent || text == "HIGH";
        break;
    case PainField::OrderService:
        m_orderUrgent = m_orderUrgent || IsUrgentService(text);
        break;
    case PainField::OrderInstrument:
        m_orderUrgent = m_orderUrgent || text == "INST";
        break;
    case PainField::InstructedAmount:
    case PainField::EquivalentAmount:
        TakeAmount(text);
        break;
    case PainField::Name:
        m_order.name = text;
        break;
    case PainField::Account:
        m_order.account = text;
        break;
    case PainField::Bank:
        m_order.bankCode = text;
        break;
    case PainField::BankName:
        m_order.bankName = text;
        break;
    case PainField::RemittanceText:
        m_order.label += m_order.label.empty() ? text : " " + text;
        m_order.label = Shortened(m_order.label);
        break;
    case PainField::RemittanceReference:
        if (m_order.label.empty())
        {
            m_order.label = text;
        }
        break;
    default:
        break;
    }
}

} // namespace

void ConvertPain(PainMessage message, OrderFile& file, ConversionOutput& output)
{
    PainHandler handler(message, output);
    ParseXml(file, handler);
    if (!handler.FoundMessage())
    {
        throw Failure(
            FailureNumber::NotThisFormat,
            support::FormatA("Order file %s holds no %s message", file.Path().c_str(),
                             message == PainMessage::CreditTransfer ? "pain.001" : "pain.008"));
    }
}

} // namespace engine
