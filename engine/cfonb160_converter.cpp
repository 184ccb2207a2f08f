#include "engine/cfonb160_converter.h"

#include "engine/cfonb_converter.h"
#include "engine/cfonb_date.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr std::array<std::string_view, 5> kCodes = {"03", "06", "07", "08", "16"};
constexpr std::string_view kBills = "60";
constexpr std::array<std::string_view, 8> kTransferCodes = {"02", "22", "27", "28",
                                                            "29", "76", "08", "85"};
constexpr std::string_view kTreasury = "76";
constexpr std::array<std::string_view, 2> kDebitCodes = {"08", "85"};

// Where the zones stand that transfers and bills place differently.
struct Layout
{
    ZonePlace amount;
    ZonePlace bankCode;
};
constexpr Layout kTransferLayout = {{103, 16}, {150, 5}};
constexpr Layout kBillLayout = {{103, 12}, {82, 5}};

template <std::size_t Size>
bool Contains(const std::array<std::string_view, Size>& codes, std::string_view code)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

// The letter of position 81 with the decimals of the amounts it marks.
struct LetterCurrency
{
    const char* code;
    unsigned decimals;
};

LetterCurrency CurrencyOfLetter(char letter)
{
    // F stood for francs before the euro; today it marks Pacific francs, in whole units.
    return letter == 'F' ? LetterCurrency{"XPF", 0} : LetterCurrency{"EUR", 2};
}

class Cfonb160 final : public CfonbConverter
{
public:
    Cfonb160(OrderFile& file, ConversionOutput& output)
        : CfonbConverter(file, output, {"CFONB 160", 160, "03", "06", kCodes})
    {
    }

protected:
    RemittanceHead ReadHeader(const FixedRecord& record) override;
    void ReadOrder(const FixedRecord& record, OrderRow& order) override;
    bool IsComplement(std::string_view code) const override
    {
        return code == "07" || (m_bills && code == "16");
    }
    std::string_view Operation() const override { return m_operation; }
    ZonePlace AmountZone() const override { return Zones().amount; }
    ZonePlace TotalZone() const override { return Zones().amount; }
    std::optional<unsigned> AmountDecimals(const FixedRecord& /*record*/) const override
    {
        return m_currency.decimals;
    }

private:
    void TakeOperation(const FixedRecord& record);
    void TakeCurrency(const FixedRecord& record);
    void ReadTransferHeader(const FixedRecord& record, RemittanceHead& head);
    void ReadBillHeader(const FixedRecord& record, RemittanceHead& head);
    void ReadTransfer(const FixedRecord& record, OrderRow& order) const;
    void ReadBill(const FixedRecord& record, OrderRow& order);
    const Layout& Zones() const { return m_bills ? kBillLayout : kTransferLayout; }
    std::string BankCode(const FixedRecord& record) const
    {
        return record.Text(Zones().bankCode.position, Zones().bankCode.length);
    }

    std::string m_operation;
    bool m_bills = false;
    bool m_debits = false;
    LetterCurrency m_currency = CurrencyOfLetter('E');
};

void Cfonb160::TakeOperation(const FixedRecord& record)
{
    m_operation = record.Zone(3, 2);
    m_bills = m_operation == kBills;
    m_debits = m_bills || Contains(kDebitCodes, m_operation);
    if (!m_bills && !Contains(kTransferCodes, m_operation))
    {
        Tell(Finding::RecordMalformed, "Unknown operation code " + m_operation);
    }
}

void Cfonb160::TakeCurrency(const FixedRecord& record)
{
    const char letter = record.Zone(81, 1).front();
    m_currency = CurrencyOfLetter(letter);
    if (letter != 'E' && letter != 'F')
    {
        Tell(Finding::CurrencyMissing,
             std::string("Currency letter '") + letter + "' is taken for euro");
    }
}

RemittanceHead Cfonb160::ReadHeader(const FixedRecord& record)
{
    TakeOperation(record);
    TakeCurrency(record);
    RemittanceHead head;
    head.name = record.Text(31, 24);
    head.branchCode = record.Text(87, 5);
    head.account = record.Text(92, 11);
    head.bankCode = BankCode(record);
    m_bills ? ReadBillHeader(record, head) : ReadTransferHeader(record, head);
    head.controlReference = head.reference;
    return head;
}

void Cfonb160::ReadTransferHeader(const FixedRecord& record, RemittanceHead& head)
{
    head.sender = record.Text(13, 6);
    head.executionDate = ReadDate(record.Zone(26, 5), DateOfOneDigitYear);
    head.reference = record.Text(55, 7);
}

void Cfonb160::ReadBillHeader(const FixedRecord& record, RemittanceHead& head)
{
    head.sender = record.Text(19, 6);
    head.executionDate = ReadDate(record.Zone(25, 6), DateOfTwoDigitYear);
    head.label = record.Text(55, 24);
    head.reference = record.Text(150, 11);
}

void Cfonb160::ReadOrder(const FixedRecord& record, OrderRow& order)
{
    order.currency = m_currency.code;
    order.urgent = m_operation == kTreasury;
    order.name = record.Text(31, 24);
    order.bankName = record.Text(55, 24);
    order.branchCode = record.Text(87, 5);
    order.account = record.Text(92, 11);
    order.bankCode = BankCode(record);
    m_bills ? ReadBill(record, order) : ReadTransfer(record, order);
    order.debitAccount = m_debits ? order.account : Head().account;
    order.creditAccount = m_debits ? Head().account : order.account;
}

void Cfonb160::ReadTransfer(const FixedRecord& record, OrderRow& order) const
{
    order.reference = record.Text(19, 12);
    order.transactionReference = order.reference;
    order.label = record.Text(119, 31);
    order.executionDate = Head().executionDate;
}

void Cfonb160::ReadBill(const FixedRecord& record, OrderRow& order)
{
    order.reference = record.Text(151, 10);
    order.transactionReference = record.Text(21, 10);
    order.executionDate = ReadDate(record.Zone(119, 6), DateOfTwoDigitYear);
}

} // namespace

void ConvertCfonb160(OrderFile& file, ConversionOutput& output)
{
    Cfonb160(file, output).Convert();
}

} // namespace engine
