#include "engine/cfonb_converter.h"

#include "engine/failure.h"
#include "engine/order_amount.h"
#include "support/format.h"

namespace engine
{

namespace
{

constexpr std::string_view kHeader = "03";
constexpr std::string_view kTotal = "08";

// Right-aligned digits, filled with zeros or blanks. Blanks behind them are no filling: a record
// that was cut within the zone would be read as a smaller amount.
std::optional<std::string> DigitsOf(std::string_view zone)
{
    const std::size_t first = zone.find_first_not_of(' ');
    const std::string_view digits =
        first == std::string_view::npos ? std::string_view() : zone.substr(first);
    return IsDigits(digits) ? std::optional<std::string>(digits) : std::nullopt;
}

ExactDecimal NumberOf(const std::string& digits)
{
    ExactDecimal number;
    ExactDecimal::Parse(digits, '.', number);
    return number;
}

ExactDecimal NumberOf(std::string digits, unsigned decimals)
{
    if (digits.size() <= decimals)
    {
        digits.insert(0, decimals + 1U - digits.size(), '0');
    }
    digits.insert(digits.size() - decimals, 1, '.');
    return NumberOf(digits);
}

} // namespace

CfonbConverter::CfonbConverter(OrderFile& file, ConversionOutput& output, const Format& format)
    : m_file(file), m_output(output), m_format(format),
      m_records(file, output, format.recordLength, format.codes)
{
}

void CfonbConverter::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(m_records.Number(), std::to_string(m_records.Number()), finding, text);
}

std::string CfonbConverter::ReadDate(std::string_view zone, std::string (*read)(std::string_view))
{
    std::string date = read(zone);
    if (date.empty() && zone.find_first_not_of(" 0") != std::string_view::npos)
    {
        Tell(Finding::FieldMalformed, "Date zone '" + std::string(zone) + "' holds no date");
    }
    return date;
}

void CfonbConverter::Convert()
{
    FixedRecord record;
    if (!m_records.Next(record))
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s is empty", m_file.Path().c_str()));
    }
    if (record.Zone(1, m_format.firstHeader.size()) != m_format.firstHeader)
    {
        throw Failure(
            FailureNumber::NotThisFormat,
            support::FormatA("Order file %s is no %s file: it does not begin with a header record "
                             "%s",
                             m_file.Path().c_str(), m_format.name,
                             std::string(m_format.firstHeader).c_str()));
    }
    do
    {
        Handle(record);
    } while (m_records.Next(record));
    EndWithoutTotal();
}

void CfonbConverter::Handle(const FixedRecord& record)
{
    const std::string_view code = record.Code();
    if (code == kHeader)
    {
        EndWithoutTotal();
        OpenRemittance(ReadHeader(record));
        return;
    }
    if (code == m_format.orderCode)
    {
        TakeOrder(record);
    }
    else if (code == kTotal)
    {
        TakeTotal(record);
    }
    else if (IsComplement(code))
    {
        TakeComplement(record);
    }
    else
    {
        m_records.TellUnknownCode(record);
    }
}

void CfonbConverter::CheckOperation(const FixedRecord& record)
{
    if (const std::string_view operation = record.Zone(3, 2); operation != Operation())
    {
        Tell(Finding::RecordOutOfPlace, "Operation code " + std::string(operation) +
                                            " in a remittance of " + std::string(Operation()));
    }
}

void CfonbConverter::OpenRemittance(const RemittanceHead& head)
{
    m_head = head;
    m_head.record = std::to_string(m_records.Number());
    m_output.BeginRemittance(m_head);
    m_open = true;
    m_orders = 0;
    m_digitSum = ExactDecimal();
}

void CfonbConverter::TakeOrder(const FixedRecord& record)
{
    FlushOrder();
    if (!m_open)
    {
        Tell(Finding::RecordOutOfPlace, "Order without a header record before it");
        OpenRemittance(RemittanceHead());
    }
    CheckOperation(record);
    ++m_orders;
    m_orderNumber = m_records.Number();
    m_order = OrderRow();
    m_order.record = std::to_string(m_orderNumber);
    ReadOrder(record, m_order);
    TakeAmount(record);
    m_orderPending = true;
}

void CfonbConverter::TakeAmount(const FixedRecord& record)
{
    const ZonePlace place = AmountZone();
    const std::string_view zone = record.Zone(place.position, place.length);
    const std::optional<std::string> digits = DigitsOf(zone);
    const std::optional<unsigned> decimals = AmountDecimals(record);
    if (digits.has_value() && decimals.has_value() && !record.IsTooLong())
    {
        m_order.amount = NumberOf(*digits, *decimals);
        m_digitSum.Add(NumberOf(*digits));
        return;
    }
    std::string problem = "Amount zone '" + std::string(zone) + "' is no number";
    if (record.IsTooLong())
    {
        // Digits of another zone may stand there, and look like a small amount.
        problem = "Amount zone '" + std::string(zone) + "' may have been shifted";
    }
    else if (digits.has_value())
    {
        problem = "Order whose number of decimals is missing";
    }
    CountAsLargest(m_output, m_orderNumber, Finding::AmountMalformed, problem, m_order);
}

void CfonbConverter::TakeComplement(const FixedRecord& record)
{
    if (!m_orderPending)
    {
        Tell(Finding::RecordOutOfPlace,
             "Record " + std::string(record.Code()) + " belongs to no order");
        return;
    }
    CheckOperation(record);
    Complete(record, m_order);
}

void CfonbConverter::Complete(const FixedRecord& /*record*/, OrderRow& /*order*/) {}

// An error row of the order names its own record, also when others completed it.
void CfonbConverter::FlushOrder()
{
    if (m_orderPending)
    {
        m_output.SetPosition(m_orderNumber);
        m_output.AddOrder(m_order);
        m_output.SetPosition(m_records.Number());
        m_orderPending = false;
    }
}

void CfonbConverter::TakeTotal(const FixedRecord& record)
{
    FlushOrder();
    if (!m_open)
    {
        Tell(Finding::RecordOutOfPlace, "Total record without a header");
        return;
    }
    CheckOperation(record);
    const ZonePlace place = TotalZone();
    const std::string_view zone = record.Zone(place.position, place.length);
    const std::optional<std::string> stated = DigitsOf(zone);
    if (!stated.has_value() || NumberOf(*stated) != m_digitSum)
    {
        Tell(Finding::TotalRecord, "The total record states '" + std::string(zone) +
                                       "', the amount zones read sum to " + m_digitSum.ToText(0));
    }
    CloseRemittance();
}

void CfonbConverter::CloseRemittance()
{
    if (m_orders == 0)
    {
        Tell(Finding::EmptyGroup, "Remittance without an order");
    }
    m_output.EndRemittance();
    m_open = false;
}

void CfonbConverter::EndWithoutTotal()
{
    FlushOrder();
    if (m_open)
    {
        Tell(Finding::MissingTotal, "The remittance has no total record 08");
        CloseRemittance();
    }
}

} // namespace engine
