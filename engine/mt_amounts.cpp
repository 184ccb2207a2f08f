#include "engine/mt_amounts.h"

namespace engine
{

namespace
{

// Three letters, then digits with a decimal comma.
RawAmount AmountOf(const std::string& text)
{
    constexpr std::size_t kCodeLength = 3;
    return {text.size() > kCodeLength ? text.substr(kCodeLength) : std::string(),
            text.substr(0, kCodeLength), true};
}

bool IsZero(const RawAmount& amount)
{
    ExactDecimal value;
    return ExactDecimal::Parse(amount.text, MtOrderAmounts::kDecimalComma, value) ==
               ExactDecimal::ParseResult::Ok &&
           value.IsZero();
}

} // namespace

std::optional<MtProblem> MtOrderAmounts::Take(const MtField& field)
{
    RawAmount& amount = field.tag == "33B" ? m_ordered : m_transferred;
    const RawAmount read = AmountOf(field.lines.front());
    if (!amount.present)
    {
        amount = read;
        return std::nullopt;
    }
    KeepLarger(amount, read, kDecimalComma);
    return MtProblem{Finding::RecordMalformed,
                     "Second field " + field.tag + " in one order; the larger one counts"};
}

void MtOrderAmounts::TakeInstruction(const std::string& code)
{
    m_equivalent = m_equivalent || code.starts_with("EQUI");
}

RawAmount MtOrderAmounts::Counting(std::optional<MtProblem>& problem) const
{
    if (!m_ordered.present)
    {
        if (m_equivalent)
        {
            problem = {Finding::FieldMissing, "EQUI without a field 33B"};
        }
        return m_transferred;
    }
    if (m_equivalent == IsZero(m_transferred))
    {
        return m_equivalent ? m_ordered : m_transferred;
    }
    problem = {Finding::FieldMalformed,
               m_equivalent ? "Field 32B must be zero with EQUI; the larger of 32B and 33B counts"
                            : "Field 32B is zero without EQUI; the larger of 32B and 33B counts"};
    RawAmount larger = m_transferred;
    KeepLarger(larger, m_ordered, kDecimalComma);
    return larger;
}

} // namespace engine
