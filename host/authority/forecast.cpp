#include "host/authority/forecast.h"

#include "host/authority/progress.h"
#include "support/casefold.h"
#include "support/codepage.h"

#include <algorithm>
#include <optional>

namespace authority
{

namespace
{

bool IsSameName(const std::string& left, const std::string& right)
{
    return support::EqualIgnoringCase(support::WideFromUtf8(left).c_str(),
                                      support::WideFromUtf8(right).c_str());
}

/// Looks for the signers that an order still lacks.
class Forecaster
{
public:
    Forecaster(scratch::Judge& judge, const rulebook::RuleBook& book, const scratch::Order& order,
               bool isOneEnough)
        : m_judge(judge), m_book(book), m_order(order), m_isOneEnough(isOneEnough)
    {
        m_forecast.parties = PartiesOf(book);
    }

    Forecast Make()
    {
        for (const std::string& signer : m_order.signers)
        {
            m_forecast.signedBy.push_back(LabelOf(signer));
        }
        m_order.isDistributed = true;
        m_forecast.soFar = m_judge.Ask(m_order);
        m_forecast.isComplete = IsComplete({});
        if (!m_forecast.isComplete)
        {
            LookForCompletions();
        }
        return std::move(m_forecast);
    }

private:
    // Two further signatures are enough wherever any number is: an acceptance rests on one or two
    // signers, and a further one can only speak against it.
    void LookForCompletions()
    {
        const std::size_t count = m_forecast.parties.size();
        Progress progress("sets of further signers", count + Choices(count + 1, 2));
        for (std::size_t first = 0; first < count; ++first)
        {
            Try({first});
            progress.Step();
        }
        const std::size_t singles = m_forecast.completions.size();
        for (std::size_t first = 0; first < count; ++first)
        {
            for (std::size_t second = first; second < count; ++second)
            {
                if (!IsCompletedBy(first, singles) && !IsCompletedBy(second, singles))
                {
                    Try({first, second});
                }
                progress.Step();
            }
        }
    }

    bool IsCompletedBy(std::size_t party, std::size_t singles) const
    {
        return std::any_of(m_forecast.completions.begin(),
                           m_forecast.completions.begin() + static_cast<std::ptrdiff_t>(singles),
                           [party](const Completion& each)
                           { return each.parties.front() == party; });
    }

    void Try(const std::vector<std::size_t>& parties)
    {
        if (m_isOneEnough && !m_forecast.completions.empty())
        {
            return;
        }
        const auto signers = NamesOf(parties);
        if (!signers || !IsComplete(*signers))
        {
            return;
        }
        Completion completion = {parties, *signers, {}};
        for (const std::size_t party : parties)
        {
            completion.label +=
                (completion.label.empty() ? "" : " + ") + m_forecast.parties[party].label;
        }
        m_forecast.completions.push_back(std::move(completion));
    }

    // Names that have not signed yet; nothing when a party has too few.
    std::optional<std::vector<std::string>> NamesOf(const std::vector<std::size_t>& parties) const
    {
        std::vector<std::string> taken = m_order.signers;
        std::vector<std::string> names;
        for (const std::size_t party : parties)
        {
            const auto& all = m_forecast.parties[party].names;
            const auto free =
                std::find_if(all.begin(), all.end(),
                             [&taken](const std::string& name)
                             {
                                 return std::none_of(taken.begin(), taken.end(),
                                                     [&name](const auto& each)
                                                     { return IsSameName(each, name); });
                             });
            if (free == all.end())
            {
                return std::nullopt;
            }
            taken.push_back(*free);
            names.push_back(*free);
        }
        return names;
    }

    bool IsComplete(const std::vector<std::string>& further)
    {
        scratch::Order order = m_order;
        order.signers.insert(order.signers.end(), further.begin(), further.end());
        for (const bool isDistributed : {false, true})
        {
            order.isDistributed = isDistributed;
            if (m_judge.Ask(order).verdict != scratch::kAccepted)
            {
                return false;
            }
        }
        return true;
    }

    std::string LabelOf(const std::string& signer) const
    {
        std::string label;
        for (const rulebook::Holder& holder : m_book.holders)
        {
            const bool isHis = std::any_of(holder.certificates.begin(), holder.certificates.end(),
                                           [&signer](const auto& each)
                                           { return IsSameName(each.commonName, signer); });
            if (isHis)
            {
                label += (label.empty() ? "" : " or ") + NameOf(holder) + " [" + holder.huid + "]";
            }
        }
        return label.empty() ? signer + " (named by no rule)" : label;
    }

    scratch::Judge& m_judge;
    const rulebook::RuleBook& m_book;
    scratch::Order m_order;
    bool m_isOneEnough; ///< completion, that is
    Forecast m_forecast;
};

} // namespace

Forecast ForecastOf(scratch::Judge& judge, const rulebook::RuleBook& book,
                    const scratch::Order& order)
{
    return Forecaster(judge, book, order, false).Make();
}

bool CanBeCompleted(scratch::Judge& judge, const rulebook::RuleBook& book,
                    const scratch::Order& order)
{
    return !IsHopeless(Forecaster(judge, book, order, true).Make());
}

bool IsHopeless(const Forecast& forecast)
{
    return !forecast.isComplete && forecast.completions.empty();
}

} // namespace authority
