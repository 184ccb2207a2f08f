#include "engine/pain_converter.h"

#include "engine/blanks.h"
#include "engine/control_totals.h"
#include "engine/failure.h"
#include "engine/order_amount.h"
#include "engine/pain_records.h"
#include "engine/pain_text.h"
#include "engine/xml_stream.h"
#include "support/codepage.h"
#include "support/format.h"

#include <string>
#include <string_view>

namespace engine
{

namespace
{

// Texts that are compared or added: cut, they would be others.
bool IsNumber(PainField field)
{
    switch (field)
    {
    case PainField::FileCount:
    case PainField::FileSum:
    case PainField::GroupCount:
    case PainField::GroupSum:
    case PainField::InstructedAmount:
    case PainField::EquivalentAmount:
        return true;
    default:
        return false;
    }
}

PainMessage OtherMessage(PainMessage message)
{
    return message == PainMessage::CreditTransfer ? PainMessage::DirectDebit
                                                  : PainMessage::CreditTransfer;
}

const char* NameOf(PainMessage message)
{
    return message == PainMessage::CreditTransfer ? "pain.001" : "pain.008";
}

class PainHandler final : public XmlHandler
{
public:
    PainHandler(PainMessage message, ConversionOutput& output)
        : m_message(message), m_paths(PainPaths(message)), m_children(m_paths), m_output(output)
    {
    }

    void StartElement(const char* name, const Attributes& attributes) override;
    std::size_t Characters(std::string_view text) override;
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
    std::string_view Narrowed(std::string_view utf8);
    void Store(PainField field);
    void StoreElsewhere(PainField field, std::string_view text);
    void StoreOfFile(PainField field, std::string_view text);
    void TakeAmount(std::string_view text);
    void TakeExecutionDate(std::string_view text);
    void OpenRemittance();
    std::string OrderRecord() const;
    std::string GroupRecord() const;

    PainMessage m_message;
    const Paths& m_paths;
    ChildMemo<PainField> m_children;
    ConversionOutput& m_output;

    // Where the document stands: outside a message, at a node of the table, or `m_skipped` levels
    // below an element that the table does not name.
    bool m_inMessage = false;
    Paths::Node m_node = Paths::kRoot;
    unsigned m_skipped = 0;
    std::string m_text;   // of the element, as it came
    std::string m_narrow; // a text of the work files

    std::uint64_t m_messages = 0;
    std::uint64_t m_group = 0;
    std::uint64_t m_orderInGroup = 0;
    ControlTotals m_fileTotals;
    std::string m_sender;
    std::string m_messageId;

    PainGroup m_payments;
    bool m_remittanceOpen = false;
    PainOrder m_order;
    std::string m_amountCurrency; // of the amount being read
};

std::string PainHandler::GroupRecord() const
{
    return std::to_string(m_group);
}

std::string PainHandler::OrderRecord() const
{
    return (m_payments.head.record + ".").append(std::to_string(m_orderInGroup));
}

void PainHandler::StartElement(const char* name, const Attributes& attributes)
{
    if (!m_inMessage)
    {
        if (IsPainMessageElement(m_message, name))
        {
            BeginMessage();
        }
        else if (const PainMessage other = OtherMessage(m_message);
                 IsPainMessageElement(other, name))
        {
            m_output.AddError(Line(), "", Finding::RecordOutOfPlace,
                              std::string("A ") + NameOf(other) +
                                  " message in the file is passed over");
        }
        return;
    }
    const Paths::Node child = m_skipped > 0 ? Paths::kNowhere : m_children.Child(m_node, name);
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
        m_amountCurrency = Shortened(Narrowed(attributes.Find("Ccy")));
        break;
    default:
        break;
    }
}

std::size_t PainHandler::Characters(std::string_view text)
{
    if (m_inMessage && m_skipped == 0 && m_paths.FieldOf(m_node) != PainField::None)
    {
        m_text += text;
    }
    return m_text.size();
}

void PainHandler::EndElement()
{
    if (!m_inMessage)
    {
        m_output.SetPosition(Line());
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
    m_output.SetPosition(Line());
    m_fileTotals.Compare(m_output, Line(), m_messageId, {Finding::HeaderCount, Finding::HeaderSum},
                         "file");
}

void PainHandler::BeginGroup()
{
    ++m_group;
    m_orderInGroup = 0;
    m_payments = PainGroup();
    m_payments.head.record = GroupRecord();
    m_payments.head.sender = m_sender;
    m_payments.head.controlReference = m_messageId;
    m_remittanceOpen = false;
}

// The head's elements stand before the first order.
void PainHandler::OpenRemittance()
{
    if (!m_remittanceOpen)
    {
        m_output.BeginRemittance(m_payments.head);
        m_remittanceOpen = true;
    }
}

void PainHandler::EndGroup()
{
    OpenRemittance();
    m_output.SetPosition(Line());
    m_output.EndRemittance();
    if (m_orderInGroup == 0)
    {
        m_output.AddError(Line(), GroupRecord(), Finding::EmptyGroup,
                          "Payment group without an order");
    }
    m_payments.totals.Compare(m_output, Line(), GroupRecord(),
                              {Finding::GroupCount, Finding::GroupSum}, "payment group");
}

void PainHandler::BeginOrder()
{
    OpenRemittance();
    ++m_orderInGroup;
    // Copied, so that its texts keep their room.
    static const PainOrder empty;
    m_order = empty;
    m_order.row.record = OrderRecord();
}

void PainHandler::EndOrder()
{
    OrderRow& row = m_order.row;
    const RemittanceHead& head = m_payments.head;
    m_fileTotals.CountOrder();
    m_payments.totals.CountOrder();
    if (ReadAmount(m_order.amount, '.', m_output, Line(), row))
    {
        m_fileTotals.Add(row.amount);
        m_payments.totals.Add(row.amount);
    }
    if (row.transactionReference.empty())
    {
        row.transactionReference = row.reference;
    }
    row.urgent = row.urgent || m_payments.urgent;
    row.executionDate = head.executionDate;
    const bool transfer = m_message == PainMessage::CreditTransfer;
    row.debitAccount = transfer ? head.account : row.account;
    row.creditAccount = transfer ? row.account : head.account;
    m_output.SetPosition(Line());
    m_output.AddOrder(row);
}

void PainHandler::TakeAmount(std::string_view text)
{
    RawAmount& amount = m_order.amount;
    if (!amount.present)
    {
        amount.text = text;
        amount.currency = m_amountCurrency;
        amount.present = true;
        return;
    }
    m_output.AddError(Line(), OrderRecord(), Finding::RecordMalformed,
                      "Second amount in one order; the larger one counts");
    KeepLarger(amount, {std::string(text), m_amountCurrency, true}, '.');
}

// In Windows-1252, without the blanks around it. Valid until the next call, and no longer than the
// text given.
std::string_view PainHandler::Narrowed(std::string_view utf8)
{
    if (support::IsAscii(utf8))
    {
        return WithoutBlanks(utf8);
    }
    support::NarrowFromUtf8(utf8, m_narrow);
    return WithoutBlanks(m_narrow);
}

void PainHandler::Store(PainField field)
{
    if (field == PainField::None)
    {
        return;
    }
    const std::string_view whole = Narrowed(m_text);
    const std::string_view text = IsNumber(field) ? whole : Shortened(whole);
    switch (field)
    {
    case PainField::ExecutionDate:
        TakeExecutionDate(text);
        break;
    case PainField::InstructedAmount:
    case PainField::EquivalentAmount:
        TakeAmount(text);
        break;
    default:
        StoreElsewhere(field, text);
        break;
    }
}

void PainHandler::StoreElsewhere(PainField field, std::string_view text)
{
    if (field < PainField::Group)
    {
        StoreOfFile(field, text);
    }
    else if (field < PainField::Order)
    {
        m_payments.Take(field, text);
    }
    else
    {
        m_order.Take(field, text);
    }
}

void PainHandler::StoreOfFile(PainField field, std::string_view text)
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

void PainHandler::TakeExecutionDate(std::string_view text)
{
    if (text.empty())
    {
        return; // the choice of later versions closes after its child
    }
    m_payments.head.executionDate = PlainDate(text);
    if (m_payments.head.executionDate.empty())
    {
        m_output.AddError(Line(), GroupRecord(), Finding::FieldMalformed,
                          std::string("The execution date ").append(text) + " is none");
    }
}

} // namespace

void ConvertPain(PainMessage message, OrderFile& file, ConversionOutput& output)
{
    PainHandler handler(message, output);
    ParseXml(file, handler);
    if (!handler.FoundMessage())
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s holds no %s message", file.Path().c_str(),
                                       NameOf(message)));
    }
}

} // namespace engine
