#include "engine/conversion_output.h"

#include "support/currencies.h"
#include "support/format.h"

#include <algorithm>
#include <array>

namespace engine
{

namespace
{

constexpr std::uint16_t kUnknown = 0xFFFF;
constexpr unsigned kUsualDecimals = 2;
constexpr std::size_t kShownCharacters = 40;
// An amount unit is 10^-7: a reader would scale more decimals wrongly.
constexpr unsigned kMostDecimals = 7;
// The largest amount of one row that a reader can weigh: 2^63 - 1 amount units.
constexpr const char* kLargestWeighed = "922337203685.477580";
// Marks a row that counts; readers stop at the first row without it.
constexpr std::string_view kBody = "1";
// In the totals, the record of the rows that are about the whole file.
constexpr std::string_view kWholeFile = "*";
// What stands for a currency that the file leaves out: a row's currency is never empty.
constexpr std::array<char, 3> kNoCurrency = {'X', 'X', 'X'};

std::string_view View(const std::array<char, 3>& code)
{
    return {code.data(), code.size()};
}

std::uint16_t CurrencyDecimals(std::string_view currency)
{
    const std::string code(currency);
    return GlobalResourceDevise == nullptr ? kUnknown
                                           : GlobalResourceDevise->GetDecimals(code.c_str(), 0);
}

bool IsCurrencyCode(const std::string& currency)
{
    return currency.size() == kNoCurrency.size() &&
           std::all_of(currency.begin(), currency.end(),
                       [](char c) { return c >= 'A' && c <= 'Z'; });
}

// The decimals that an amount is written with: those of its currency; where they are not known as
// many as the value has, two at least.
unsigned WrittenDecimals(std::uint16_t ofCurrency, const ExactDecimal& amount)
{
    return ofCurrency == kUnknown
               ? std::clamp(amount.FractionDigits(), kUsualDecimals, kMostDecimals)
               : ofCurrency;
}

} // namespace

ConversionOutput::ConversionOutput(const std::string& stem)
    : m_main(stem, HeaderKind::None, {}),
      m_remittances(stem + ".bp", HeaderKind::FourLines, {"RECORD", "CORPS", "TOTAL", "DEVISE"}),
      m_orders(stem + ".cp", HeaderKind::FourLines,
               {"RECORD", "CORPS", "CTL_CPTDEBIT", "CTL_CPTCREDIT", "CTL_MONTANT", "CTL_DEVISE",
                "CTL_REF_TRANS", "CTL_URGENT", "CTL_EXEC_DATE", "BANQUE", "GUICHET", "COMPTE",
                "LIBELLE", "RAISONSOC", "DOMICILIATION", "REFERENCE", "MONTANT", "DEVISE"}),
      m_details(stem + ".cp2", HeaderKind::FourLines,
                {"RECORD", "CORPS", "CTL_REF_REMISE", "DATE_EXEC", "BANQUE", "GUICHET", "COMPTE",
                 "LIBELLE", "DEVISE_TRANS", "RAISONSOC", "EMETTEUR", "REF_REMISE"}),
      m_totals(stem + ".tot", HeaderKind::FourLines,
               {"RECORD", "CORPS", "TOTAL", "DEVISE", "NB_ORDRES"}),
      m_errors(stem + ".err", HeaderKind::OneLine, {"POS", "CORPS", "RECORD", "NO_ERR", "MESS"})
{
}

void ConversionOutput::BeginRemittance(const RemittanceHead& head)
{
    EndRemittance();
    m_head = head;
    m_inRemittance = true;
    ++m_remittanceCount;
}

// Only codes are told apart: sums are kept for each, and a file must not choose how many.
ConversionOutput::CurrencyCode ConversionOutput::WrittenCurrency(const std::string& currency)
{
    CurrencyCode code = kNoCurrency;
    if (IsCurrencyCode(currency))
    {
        std::copy(currency.begin(), currency.end(), code.begin());
    }
    return code;
}

ConversionOutput::CurrencySum& ConversionOutput::SumOf(Sums& sums, const CurrencyCode& currency)
{
    const auto [entry, isNew] = sums.try_emplace(currency);
    if (isNew)
    {
        entry->second.decimals = CurrencyDecimals(View(currency));
    }
    return entry->second;
}

void ConversionOutput::CheckCurrency(const OrderRow& order, std::uint16_t decimals)
{
    if (order.currency.empty())
    {
        AddError(m_position, order.record, Finding::CurrencyMissing, "Currency missing");
        return;
    }
    if (!IsCurrencyCode(order.currency))
    {
        AddError(m_position, order.record, Finding::CurrencyUnknown,
                 "Currency " + order.currency.substr(0, kShownCharacters) +
                     " is no code of three capital letters");
    }
    else if (decimals == kUnknown)
    {
        AddError(m_position, order.record, Finding::CurrencyUnknown,
                 "Currency " + order.currency + " has no known number of decimals");
    }
    else if (order.amount.FractionDigits() > decimals)
    {
        AddError(m_position, order.record, Finding::AmountTooPrecise,
                 "Amount " + order.amount.ToText(order.amount.FractionDigits()) +
                     " has more decimals than " + order.currency + " and is rounded up");
    }
}

void ConversionOutput::AddOrder(const OrderRow& order)
{
    const CurrencyCode code = WrittenCurrency(order.currency);
    const std::string_view currency = View(code);
    CurrencySum& fileSum = SumOf(m_fileSums, code);
    CheckCurrency(order, fileSum.decimals);
    const unsigned decimals = WrittenDecimals(fileSum.decimals, order.amount);
    // Sums add what is written, so that whoever adds the orders finds the total.
    const ExactDecimal written = order.amount.RoundedUp(decimals);
    const std::string amount = written.ToText(decimals);
    m_orders.Row({order.record, kBody, order.debitAccount, order.creditAccount, amount, currency,
                  order.transactionReference, order.urgent ? "1" : "0", order.executionDate,
                  order.bankCode, order.branchCode, order.account, order.label, order.name,
                  order.bankName, order.reference, amount, currency});
    for (CurrencySum* const sum : {&fileSum, &SumOf(m_remittanceSums, code)})
    {
        sum->total.Add(written);
        ++sum->orders;
    }
    ++m_orderCount;
}

// The check then weighs less than the file holds.
void ConversionOutput::CheckTotal(const ExactDecimal& total, const std::string& written)
{
    static const ExactDecimal largest = []
    {
        ExactDecimal value;
        ExactDecimal::Parse(kLargestWeighed, '.', value);
        return value;
    }();
    if (total > largest)
    {
        AddError(m_position, m_head.record, Finding::AmountTooLarge,
                 "The total of " + written + " is weighed as " + kLargestWeighed);
    }
}

void ConversionOutput::EndRemittance()
{
    if (!m_inRemittance)
    {
        return;
    }
    for (const auto& [code, sum] : m_remittanceSums)
    {
        const std::string_view currency = View(code);
        const std::string total = sum.total.ToText(WrittenDecimals(sum.decimals, sum.total));
        CheckTotal(sum.total, std::string(total).append(" ").append(currency));
        m_remittances.Row({m_head.record, kBody, total, currency});
        m_totals.Row({m_head.record, kBody, total, currency, std::to_string(sum.orders)});
        m_details.Row({m_head.record, kBody, m_head.controlReference, m_head.executionDate,
                       m_head.bankCode, m_head.branchCode, m_head.account, m_head.label, currency,
                       m_head.name, m_head.sender, m_head.reference});
    }
    m_remittanceSums.clear();
    m_inRemittance = false;
}

void ConversionOutput::AddError(std::uint64_t position, const std::string& record, Finding finding,
                                const std::string& text)
{
    m_errors.Row(
        {std::to_string(position), kBody, record, std::to_string(static_cast<int>(finding)), text});
}

void ConversionOutput::WriteTotals()
{
    for (const auto& [code, sum] : m_fileSums)
    {
        const std::string currency(View(code));
        const std::string total = sum.total.ToText(WrittenDecimals(sum.decimals, sum.total));
        m_totals.Row({kWholeFile, kBody, total, currency, std::to_string(sum.orders)});
        m_main.Line(support::FormatA("%s %s in %I64u orders", total.c_str(), currency.c_str(),
                                     static_cast<unsigned long long>(sum.orders)));
    }
    m_main.Line(support::FormatA("%I64u remittances, %I64u orders",
                                 static_cast<unsigned long long>(m_remittanceCount),
                                 static_cast<unsigned long long>(m_orderCount)));
}

void ConversionOutput::Publish()
{
    EndRemittance();
    if (m_orderCount == 0)
    {
        AddError(m_position, "", Finding::EmptyFile, "The file holds no order");
    }
    WriteTotals();
    const std::array<WorkFile*, 6> files = {&m_remittances, &m_orders, &m_details,
                                            &m_totals,      &m_errors, &m_main};
    for (WorkFile* const file : files)
    {
        file->Complete();
    }
    std::size_t published = 0;
    try
    {
        for (; published < files.size(); ++published)
        {
            files[published]->Publish();
        }
    }
    catch (...)
    {
        while (published > 0)
        {
            files[--published]->Withdraw();
        }
        throw;
    }
}

} // namespace engine
