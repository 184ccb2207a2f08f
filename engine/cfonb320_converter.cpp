#include "engine/cfonb320_converter.h"

#include "engine/cfonb_converter.h"
#include "engine/cfonb_date.h"

#include <array>
#include <string>
#include <string_view>

namespace engine
{

namespace
{

constexpr std::array<std::string_view, 6> kCodes = {"03", "04", "05", "06", "07", "08"};

// Header zone 309: what the header says for all its orders, and what each order says itself.
bool DateStandsInHeader(char kind)
{
    return kind == '1' || kind == '2';
}
bool CurrencyStandsInHeader(char kind)
{
    return kind == '1' || kind == '3';
}

class Cfonb320 final : public CfonbConverter
{
public:
    Cfonb320(OrderFile& file, ConversionOutput& output)
        : CfonbConverter(file, output, {"CFONB 320", 320, "03PI", "04", kCodes})
    {
    }

protected:
    RemittanceHead ReadHeader(const FixedRecord& record) override;
    void ReadOrder(const FixedRecord& record, OrderRow& order) override;
    bool IsComplement(std::string_view code) const override
    {
        return code == "05" || code == "06" || code == "07";
    }
    void Complete(const FixedRecord& record, OrderRow& order) override;
    std::string_view Operation() const override { return "PI"; }
    ZonePlace AmountZone() const override { return {226, 14}; }
    ZonePlace TotalZone() const override { return {254, 18}; }
    std::optional<unsigned> AmountDecimals(const FixedRecord& record) const override;

private:
    std::string OrderCurrency(const FixedRecord& record);

    char m_kind = '1';
    std::string m_orderCurrency; // of kinds 1 and 3
};

RemittanceHead Cfonb320::ReadHeader(const FixedRecord& record)
{
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
        head.executionDate = ReadDate(record.Zone(310, 8), DateOfFourDigitYear);
    }
    return head;
}

std::optional<unsigned> Cfonb320::AmountDecimals(const FixedRecord& record) const
{
    const std::string_view decimals = record.Zone(240, 1);
    return IsDigits(decimals) ? std::optional<unsigned>(decimals.front() - '0') : std::nullopt;
}

// An equivalent amount (qualifier D) is in the currency of the debit account.
std::string Cfonb320::OrderCurrency(const FixedRecord& record)
{
    const char qualifier = record.Zone(221, 1).front();
    if (qualifier == 'D')
    {
        return Head().currency;
    }
    if (qualifier != 'T')
    {
        Tell(Finding::FieldMalformed,
             std::string("Amount qualifier '") + qualifier + "' is neither T nor D");
    }
    return CurrencyStandsInHeader(m_kind) ? m_orderCurrency : record.Text(318, 3);
}

void Cfonb320::ReadOrder(const FixedRecord& record, OrderRow& order)
{
    order.currency = OrderCurrency(record);
    order.account = record.Text(12, 34);
    order.name = record.Text(46, 35);
    order.reference = record.Text(205, 16);
    order.transactionReference = order.reference;
    order.executionDate = DateStandsInHeader(m_kind)
                              ? Head().executionDate
                              : ReadDate(record.Zone(310, 8), DateOfFourDigitYear);
    order.debitAccount = Head().account;
    order.creditAccount = order.account;
}

void Cfonb320::Complete(const FixedRecord& record, OrderRow& order)
{
    if (record.Code() == "05")
    {
        order.bankName = record.Text(11, 140);
        order.bankCode = record.Text(151, 11);
    }
    else if (record.Code() == "07")
    {
        order.label = record.Text(11, 140);
    }
}

} // namespace

void ConvertCfonb320(OrderFile& file, ConversionOutput& output)
{
    Cfonb320(file, output).Convert();
}

} // namespace engine
