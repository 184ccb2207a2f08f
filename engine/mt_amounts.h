#pragma once

#include "engine/mt_fields.h"
#include "engine/order_amount.h"
#include "engine/rows.h"

#include <optional>
#include <string>

namespace engine
{

/// What is wrong with the amounts of an order.
struct MtProblem
{
    Finding finding;
    std::string text;
};

/// The amounts of one order: field 32B, and field 33B, which holds the ordered amount with EQUI.
class MtOrderAmounts
{
public:
    static constexpr char kDecimalComma = ',';

    /// Takes a field 32B or 33B.
    std::optional<MtProblem> Take(const MtField& field);
    /// Takes a code of field 23E.
    void TakeInstruction(const std::string& code);

    /// The amount that counts.
    RawAmount Counting(std::optional<MtProblem>& problem) const;
    /// Of field 32B.
    const std::string& TransferCurrency() const noexcept { return m_transferred.currency; }

private:
    bool m_equivalent = false;
    RawAmount m_transferred; // 32B
    RawAmount m_ordered;     // 33B
};

} // namespace engine
