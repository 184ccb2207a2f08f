#include "engine/cfonb320_converter.h"

#include "engine/cfonb_date.h"
#include "engine/exact_decimal.h"
#include "engine/failure.h"
#include "engine/fixed_records.h"
#include "support/format.h"

#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr std::size_t kRecordLength = 320;
constexpr std::string_view kOperation = "PI";

// Header zone 309: what the header says for all its orders, and what each order says itself.
bool DateStandsInHeader(char kind)
{
    return kind == '1' || kind == '2';
}
bool CurrencyStandsInHeader(char kind)
{
    return kind == '1' || kind == '3';
}

class Cfonb320
{
public:
    Cfonb320(OrderFile& file, ConversionOutput& output)
        : m_file(file), m_output(output), m_records(file, output, kRecordLength)
    {
    }

    void Convert();

private:
    void Handle(const FixedRecord& record);
    void Header(const FixedRecord& record);
    void Open(const RemittanceHead& head);
    void Order(const FixedRecord& record);
    bool ReadOrderAmount(const FixedRecord& record, ExactDecimal& amount) const;
    std::string OrderCurrency(const FixedRecord& record) const;
    void FlushOrder();
    void Total(const FixedRecord& record);
    void EndOpenRemittance();
    void Tell(Finding finding, const std::string& text);

    OrderFile& m_file;
    ConversionOutput& m_output;
    FixedRecordSource m_records;
    bool m_open = false;
    char m_kind = '1';
    std::string m_orderCurrency;
    RemittanceHead m_head;
    bool m_orderPending = false; // records 05 to 07 still belong to it
    OrderRow m_order;
    std::uint64_t m_orders = 0;
    ExactDecimal m_digitSum; // amounts as plain digits, as the control total adds them
};

void Cfonb320::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(m_records.Number(), std::to_string(m_records.Number()), finding, text);
}

void Cfonb320::Convert()
{
    FixedRecord record;
    bool first = true;
    while (m_records.Next(record))
    {
        if (first && (record.Code() != "03" || record.Zone(3, 2) != kOperation))
        {
            throw Failure(FailureNumber::NotThisFormat,
                          support::FormatA("Order file %s is no CFONB 320 file: it does not begin "
                                           "with a header record 03PI",
                                           m_file.Path().c_str()));
        }
        first = false;
        Handle(record);
    }
    if (first)
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s is empty", m_file.Path().c_str()));
    }
    EndOpenRemittance();
}

void Cfonb320::Handle(const FixedRecord& record)
{
    const std::string_view code = record.Code();
    if (code == "05" && m_orderPending)
    {
        m_order.bankName = record.Text(11, 140);
        m_order.bankCode = record.Text(151, 11);
    }
    else if (code == "07" && m_orderPending)
    {
        m_order.label = record.Text(11, 140);
    }
    else if (code == "03")
    {
        Header(record);
    }
    else if (code == "04")
    {
        Order(record);
    }
    else if (code == "08")
    {
        Total(record);
    }
    else if (code != "05" && code != "06" && code != "07")
    {
        m_records.TellUnknownCode(record);
    }
    else if (!m_orderPending)
    {
        Tell(Finding::RecordOutOfPlace, "Record " + std::string(code) + " belongs to no order");
    }
}

void Cfonb320::Header(const FixedRecord& record)
{
    EndOpenRemittance();
    m_kind = record.Zone(309, 1).front();
    if (m_kind < '1' || m_kind > '4')
    {
        Tell(Finding::FieldMalformed,
             std::string("Remittance kind '") + m_kind + "' is none of 1 to 4");
    }
    m_orderCurrency = record.Text(318, 3);
    RemittanceHead head;
    head.controlReference = record.Text(173, 16);
    head.reference = head.controlReference;
    head.name = record.Text(19, 35);
    head.sender = record.Text(159, 14);
    head.bankCode = record.Text(189, 11);
    head.account = record.Text(201, 34);
    head.currency = record.Text(235, 3);
    if (DateStandsInHeader(m_kind))
    {
        head.executionDate = DateOfFourDigitYear(record.Zone(310, 8));
    }
    Open(head);
}

void Cfonb320::Open(const RemittanceHead& head)
{
    m_head = head;
    m_head.record = std::to_string(m_records.Number());
    m_output.BeginRemittance(m_head);
    m_open = true;
    m_orders = 0;
    m_digitSum = ExactDecimal();
}

bool Cfonb320::ReadOrderAmount(const FixedRecord& record, ExactDecimal& amount) const
{
    std::string digits = record.Text(226, 14);
    const std::string_view decimals = record.Zone(240, 1);
    if (!IsDigits(digits) || !IsDigits(decimals))
    {
        return false;
    }
    const auto places = static_cast<std::size_t>(decimals.front() - '0');
    if (digits.size() <= places)
    {
        digits.insert(0, places + 1U - digits.size(), '0');
    }
    digits.insert(digits.size() - places, 1, '.');
    return ExactDecimal::Parse(digits, '.', amount) == ExactDecimal::ParseResult::Ok;
}

// An equivalent amount (qualifier D) is in the currency of the debit account.
std::string Cfonb320::OrderCurrency(const FixedRecord& record) const
{
    if (record.Zone(221, 1) == "D")
    {
        return m_head.currency;
    }
    return CurrencyStandsInHeader(m_kind) ? m_orderCurrency : record.Text(318, 3);
}

void Cfonb320::Order(const FixedRecord& record)
{
    FlushOrder();
    if (!m_open)
    {
        // The order counts all the same: a limit must not be slipped under by leaving it out.
        Tell(Finding::RecordOutOfPlace, "Order without a header record before it");
        Open(RemittanceHead());
    }
    m_order = OrderRow();
    m_order.record = std::to_string(m_records.Number());
    if (!ReadOrderAmount(record, m_order.amount))
    {
        Tell(Finding::AmountMalformed, "Amount zone '" + record.Text(226, 14) + "' with '" +
                                           std::string(record.Zone(240, 1)) +
                                           "' decimals is no number");
        return;
    }
    ExactDecimal digits;
    ExactDecimal::Parse(record.Zone(226, 14), '.', digits);
    m_digitSum.Add(digits);
    ++m_orders;
    m_order.currency = OrderCurrency(record);
    m_order.account = record.Text(12, 34);
    m_order.name = record.Text(46, 35);
    m_order.reference = record.Text(205, 16);
    m_order.transactionReference = m_order.reference;
    m_order.executionDate = DateStandsInHeader(m_kind) ? m_head.executionDate
                                                       : DateOfFourDigitYear(record.Zone(310, 8));
    m_order.debitAccount = m_head.account;
    m_order.creditAccount = m_order.account;
    m_orderPending = true;
}

void Cfonb320::FlushOrder()
{
    if (m_orderPending)
    {
        m_output.AddOrder(m_order);
        m_orderPending = false;
    }
}

void Cfonb320::Total(const FixedRecord& record)
{
    FlushOrder();
    if (!m_open)
    {
        Tell(Finding::RecordOutOfPlace, "Total record without a header");
        return;
    }
    ExactDecimal stated;
    const std::string digits = record.Text(254, 18);
    if (!IsDigits(digits) ||
        ExactDecimal::Parse(digits, '.', stated) != ExactDecimal::ParseResult::Ok ||
        stated != m_digitSum)
    {
        Tell(Finding::TotalRecord, "The total record states " + digits +
                                       ", the amount zones read sum to " + m_digitSum.ToText(0));
    }
    if (m_orders == 0)
    {
        Tell(Finding::EmptyGroup, "Remittance without an order");
    }
    m_output.EndRemittance();
    m_open = false;
}

void Cfonb320::EndOpenRemittance()
{
    FlushOrder();
    if (m_open)
    {
        Tell(Finding::MissingTotal, "The remittance has no total record 08");
        m_output.EndRemittance();
        m_open = false;
    }
}

} // namespace

void ConvertCfonb320(OrderFile& file, ConversionOutput& output)
{
    Cfonb320(file, output).Convert();
}

} // namespace engine
