#pragma once

#include "engine/exact_decimal.h"
#include "engine/rows.h"
#include "engine/work_file.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace engine
{

/// The six work files of one conversion: "<stem>" and "<stem>.bp", ".cp", ".cp2", ".tot", ".err".
/// They appear whole or not at all: until Publish they have temporary names, and are removed when
/// the object goes without it. Memory does not grow with the number of orders.
class ConversionOutput
{
public:
    /// `stem` is the order file's path followed by ".veu", Windows-1252.
    explicit ConversionOutput(const std::string& stem);

    /// Starts a remittance; ends the one before it.
    void BeginRemittance(const RemittanceHead& head);
    /// Adds one order to the remittance under way. The amount is written with exactly its
    /// currency's decimals; what does not fit them is rounded up and told as an error row.
    void AddOrder(const OrderRow& order);
    /// Writes the remittance's rows, one for each currency. Nothing happens without a remittance.
    void EndRemittance();

    /// One row of the error file. `position` is a line or record number of the order file.
    void AddError(std::uint64_t position, const std::string& record, Finding finding,
                  const std::string& text);

    std::uint64_t OrderCount() const noexcept { return m_orderCount; }
    std::uint64_t RemittanceCount() const noexcept { return m_remittanceCount; }

    /// Ends the remittance under way, writes the totals and gives all files their names.
    void Publish();

    /// Where the converter stands in the order file; error rows of AddOrder name it.
    void SetPosition(std::uint64_t position) noexcept { m_position = position; }

private:
    struct CurrencySum
    {
        std::uint16_t decimals = 0; // the currency's own, asked for once
        ExactDecimal total;
        std::uint64_t orders = 0;
    };
    using CurrencyCode = std::array<char, 3>;
    using Sums = std::map<CurrencyCode, CurrencySum>;

    static CurrencyCode WrittenCurrency(const std::string& currency);
    static CurrencySum& SumOf(Sums& sums, const CurrencyCode& currency);
    void CheckCurrency(const OrderRow& order, std::uint16_t decimals);
    void CheckTotal(const ExactDecimal& total, const std::string& written);
    void WriteTotals();

    WorkFile m_main;
    WorkFile m_remittances;
    WorkFile m_orders;
    WorkFile m_details;
    WorkFile m_totals;
    WorkFile m_errors;

    bool m_inRemittance = false;
    RemittanceHead m_head;
    Sums m_remittanceSums;
    Sums m_fileSums;
    std::uint64_t m_orderCount = 0;
    std::uint64_t m_remittanceCount = 0;
    std::uint64_t m_position = 0;
};

} // namespace engine
