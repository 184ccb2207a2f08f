#pragma once

#include "engine/conversion_output.h"
#include "engine/exact_decimal.h"
#include "engine/fixed_records.h"
#include "engine/order_file.h"
#include "engine/rows.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace engine
{

/// Where a zone of a record stands; positions count from 1.
struct ZonePlace
{
    std::size_t position;
    std::size_t length;
};

/// What the French fixed-width formats have in common: remittances that a header record 03 opens
/// and a total record 08 closes, orders with records that complete them, totals that add the digits
/// of the amount zones. Orders count also where the records round them are wrong or missing: a
/// limit must not be slipped under by breaking a file.
class CfonbConverter
{
public:
    virtual ~CfonbConverter() = default;
    CfonbConverter(const CfonbConverter&) = delete;
    CfonbConverter& operator=(const CfonbConverter&) = delete;

    /// Raises engine::Failure when the file does not begin with a header record of the format.
    void Convert();

protected:
    struct Format
    {
        const char* name;
        std::size_t recordLength;
        std::string_view firstHeader; ///< how the file begins
        std::string_view orderCode;
        std::span<const std::string_view> codes; ///< what its records begin with
    };

    CfonbConverter(OrderFile& file, ConversionOutput& output, const Format& format);

    virtual RemittanceHead ReadHeader(const FixedRecord& record) = 0;
    virtual void ReadOrder(const FixedRecord& record, OrderRow& order) = 0;
    /// Whether records of this code complete an order.
    virtual bool IsComplement(std::string_view code) const = 0;
    virtual void Complete(const FixedRecord& record, OrderRow& order);
    /// The operation code of all records of the remittance under way.
    virtual std::string_view Operation() const = 0;
    virtual ZonePlace AmountZone() const = 0;
    virtual ZonePlace TotalZone() const = 0;
    /// Decimals of the amount of an order's record; none when the record does not say so.
    virtual std::optional<unsigned> AmountDecimals(const FixedRecord& record) const = 0;

    const RemittanceHead& Head() const noexcept { return m_head; }
    /// An error row about the record under way.
    void Tell(Finding finding, const std::string& text);
    /// The date; a zone that is neither empty, zero nor a date is told.
    std::string ReadDate(std::string_view zone, std::string (*read)(std::string_view));

private:
    void Handle(const FixedRecord& record);
    void CheckOperation(const FixedRecord& record);
    void OpenRemittance(const RemittanceHead& head);
    void TakeOrder(const FixedRecord& record);
    void TakeAmount(const FixedRecord& record);
    void TakeComplement(const FixedRecord& record);
    void TakeTotal(const FixedRecord& record);
    void FlushOrder();
    void CloseRemittance();
    void EndWithoutTotal();

    OrderFile& m_file;
    ConversionOutput& m_output;
    Format m_format;
    FixedRecordSource m_records;
    bool m_open = false;
    RemittanceHead m_head;
    bool m_orderPending = false; // records that complete it may follow
    OrderRow m_order;
    std::uint64_t m_orderNumber = 0; // its record
    std::uint64_t m_orders = 0;      // of the remittance
    ExactDecimal m_digitSum;         // amounts as plain digits, as the total record adds them
};

} // namespace engine
