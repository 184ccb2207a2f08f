#include "engine/cfonb160_converter.h"

#include "engine/cfonb_date.h"
#include "engine/exact_decimal.h"
#include "engine/failure.h"
#include "engine/fixed_records.h"
#include "support/format.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr std::size_t kRecordLength = 160;
constexpr std::string_view kBills = "60";
constexpr std::array<std::string_view, 8> kTransferCodes = {"02", "22", "27", "28",
                                                            "29", "76", "08", "85"};
constexpr std::string_view kTreasury = "76";
constexpr std::array<std::string_view, 2> kDebitCodes = {"08", "85"};

// Where the zones stand that transfers and bills place differently.
struct Layout
{
    std::size_t amountLength;
    std::size_t bankCode;
};
constexpr Layout kTransferLayout = {16, 150};
constexpr Layout kBillLayout = {12, 82};

constexpr std::size_t kAmount = 103;

template <std::size_t Size>
bool Contains(const std::array<std::string_view, Size>& codes, std::string_view code)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

// The letter of position 81 with the decimals of the amounts it marks.
struct LetterCurrency
{
    const char* code;
    bool wholeUnits;
};

LetterCurrency CurrencyOfLetter(char letter)
{
    // F stood for francs before the euro; today it marks Pacific francs, in whole units.
    return letter == 'F' ? LetterCurrency{"XPF", true} : LetterCurrency{"EUR", false};
}

class Cfonb160
{
public:
    Cfonb160(OrderFile& file, ConversionOutput& output)
        : m_file(file), m_output(output), m_records(file, output, kRecordLength)
    {
    }

    void Convert();

private:
    void Handle(const FixedRecord& record);
    void Header(const FixedRecord& record);
    void Open(const RemittanceHead& head);
    void OpenWithoutHeader();
    void TransferHeader(const FixedRecord& record, RemittanceHead& head) const;
    void BillHeader(const FixedRecord& record, RemittanceHead& head) const;
    void Detail(const FixedRecord& record);
    void Total(const FixedRecord& record);
    void EndOpenRemittance();
    bool ReadZoneAmount(const FixedRecord& record, ExactDecimal& amount) const;
    void Tell(Finding finding, const std::string& text);
    const Layout& ZoneLayout() const { return m_bills ? kBillLayout : kTransferLayout; }

    OrderFile& m_file;
    ConversionOutput& m_output;
    FixedRecordSource m_records;
    bool m_open = false;
    std::string m_operation = "02";
    bool m_bills = false;
    bool m_debits = false;
    bool m_urgent = false;
    LetterCurrency m_currency = CurrencyOfLetter('E');
    RemittanceHead m_head;
    std::uint64_t m_orders = 0;
    ExactDecimal m_sum;
};

void Cfonb160::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(m_records.Number(), std::to_string(m_records.Number()), finding, text);
}

void Cfonb160::Convert()
{
    FixedRecord record;
    bool first = true;
    while (m_records.Next(record))
    {
        if (first && record.Code() != "03")
        {
            throw Failure(FailureNumber::NotThisFormat,
                          support::FormatA("Order file %s is no CFONB 160 file: it does not begin "
                                           "with a header record 03",
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

void Cfonb160::Handle(const FixedRecord& record)
{
    const std::string_view code = record.Code();
    if (code == "03")
    {
        Header(record);
    }
    else if (code == "06")
    {
        Detail(record);
    }
    else if (code == "08")
    {
        Total(record);
    }
    else if (code != "07" && code != "16")
    {
        // 07 and 16 complete the order before them and are no orders themselves.
        m_records.TellUnknownCode(record);
    }
}

void Cfonb160::Header(const FixedRecord& record)
{
    EndOpenRemittance();
    const std::string_view operation = record.Zone(3, 2);
    m_operation = operation;
    m_bills = operation == kBills;
    m_debits = m_bills || Contains(kDebitCodes, operation);
    m_urgent = operation == kTreasury;
    if (!m_bills && !Contains(kTransferCodes, operation))
    {
        Tell(Finding::RecordMalformed, "Unknown operation code " + std::string(operation));
    }
    const char letter = record.Zone(81, 1).front();
    m_currency = CurrencyOfLetter(letter);
    if (letter != 'E' && letter != 'F')
    {
        Tell(Finding::CurrencyMissing,
             std::string("Currency letter '") + letter + "' is taken for euro");
    }
    RemittanceHead head;
    head.name = record.Text(31, 24);
    head.branchCode = record.Text(87, 5);
    head.account = record.Text(92, 11);
    head.bankCode = record.Text(ZoneLayout().bankCode, 5);
    head.currency = m_currency.code;
    m_bills ? BillHeader(record, head) : TransferHeader(record, head);
    Open(head);
}

void Cfonb160::Open(const RemittanceHead& head)
{
    m_head = head;
    m_head.record = std::to_string(m_records.Number());
    m_output.BeginRemittance(m_head);
    m_open = true;
    m_orders = 0;
    m_sum = ExactDecimal();
}

void Cfonb160::TransferHeader(const FixedRecord& record, RemittanceHead& head) const
{
    head.sender = record.Text(13, 6);
    head.executionDate = DateOfOneDigitYear(record.Zone(26, 5));
    head.reference = record.Text(55, 7);
    head.controlReference = head.reference;
}

void Cfonb160::BillHeader(const FixedRecord& record, RemittanceHead& head) const
{
    head.sender = record.Text(19, 6);
    head.executionDate = DateOfTwoDigitYear(record.Zone(25, 6));
    head.label = record.Text(55, 24);
    head.reference = record.Text(150, 11);
    head.controlReference = head.reference;
}

bool Cfonb160::ReadZoneAmount(const FixedRecord& record, ExactDecimal& amount) const
{
    std::string digits = record.Text(kAmount, ZoneLayout().amountLength);
    if (!IsDigits(digits))
    {
        return false;
    }
    if (!m_currency.wholeUnits)
    {
        digits.insert(0, 3U - std::min<std::size_t>(digits.size(), 3U), '0');
        digits.insert(digits.size() - 2U, 1, '.');
    }
    return ExactDecimal::Parse(digits, '.', amount) == ExactDecimal::ParseResult::Ok;
}

// The order counts all the same: a limit must not be slipped under by leaving the header out.
void Cfonb160::OpenWithoutHeader()
{
    Tell(Finding::RecordOutOfPlace, "Order without a header record before it");
    Open(RemittanceHead());
}

void Cfonb160::Detail(const FixedRecord& record)
{
    if (!m_open)
    {
        OpenWithoutHeader();
    }
    if (record.Zone(3, 2) != m_operation)
    {
        Tell(Finding::RecordOutOfPlace, "Operation code " + std::string(record.Zone(3, 2)) +
                                            " in a remittance of " + m_operation);
    }
    OrderRow order;
    order.record = std::to_string(m_records.Number());
    if (!ReadZoneAmount(record, order.amount))
    {
        Tell(Finding::AmountMalformed,
             "Amount zone '" + record.Text(kAmount, ZoneLayout().amountLength) + "' is no number");
        return;
    }
    order.currency = m_currency.code;
    order.urgent = m_urgent;
    order.name = record.Text(31, 24);
    order.bankName = record.Text(55, 24);
    order.branchCode = record.Text(87, 5);
    order.account = record.Text(92, 11);
    order.bankCode = record.Text(ZoneLayout().bankCode, 5);
    if (m_bills)
    {
        order.reference = record.Text(151, 10);
        order.transactionReference = record.Text(21, 10);
        order.executionDate = DateOfTwoDigitYear(record.Zone(119, 6));
    }
    else
    {
        order.reference = record.Text(19, 12);
        order.transactionReference = order.reference;
        order.label = record.Text(119, 31);
        order.executionDate = m_head.executionDate;
    }
    order.debitAccount = m_debits ? order.account : m_head.account;
    order.creditAccount = m_debits ? m_head.account : order.account;
    m_output.AddOrder(order);
    m_sum.Add(order.amount);
    ++m_orders;
}

void Cfonb160::Total(const FixedRecord& record)
{
    if (!m_open)
    {
        Tell(Finding::RecordOutOfPlace, "Total record without a header");
        return;
    }
    ExactDecimal stated;
    if (!ReadZoneAmount(record, stated) || stated != m_sum)
    {
        Tell(Finding::TotalRecord, "The total record states " +
                                       record.Text(kAmount, ZoneLayout().amountLength) +
                                       " in the smallest unit, the orders read sum to " +
                                       m_sum.ToText(m_currency.wholeUnits ? 0U : 2U));
    }
    m_open = false;
    if (m_orders == 0)
    {
        Tell(Finding::EmptyGroup, "Remittance without an order");
    }
    m_output.EndRemittance();
}

void Cfonb160::EndOpenRemittance()
{
    if (m_open)
    {
        Tell(Finding::MissingTotal, "The remittance has no total record 08");
        m_output.EndRemittance();
        m_open = false;
    }
}

} // namespace

void ConvertCfonb160(OrderFile& file, ConversionOutput& output)
{
    Cfonb160(file, output).Convert();
}

} // namespace engine
