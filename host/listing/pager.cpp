#include "host/listing/pager.h"

#include "host/exit_status.h"
#include "host/listing/next_page.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/query_options.h"
#include "host/refusal.h"
#include "host/text.h"
#include "support/numbers.h"

#include <limits>
#include <utility>

namespace listing
{

namespace
{

constexpr std::size_t kMostDigits = 18; // all of them numbers of 64 bits

std::optional<std::int64_t> BelowFrom(const host::OptionValues& values)
{
    const host::OptionValue* const value = values.Find("below");
    if (value == nullptr)
    {
        return std::nullopt;
    }
    const bool isNumber = !value->text.empty() && value->text.size() <= kMostDigits &&
                          value->text.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber)
    {
        throw host::UsageRefusal(value->origin + ": " + host::Quoted(value->text) +
                                 " is no number of a row. Give the one that the page before told, "
                                 "such as 1200.");
    }
    return support::ToInt64(value->text.c_str());
}

std::size_t LimitOf(const host::OptionValues& values)
{
    const std::size_t limit = host::LimitFrom(values);
    if (!values.IsOn("all"))
    {
        return limit;
    }
    const host::OptionValue* const given = values.Find("limit");
    const std::string origin = values.Find("all")->origin;
    if (given != nullptr && given->origin.starts_with("option ") && origin.starts_with("option "))
    {
        throw host::UsageRefusal(origin + ": every row is no page of " + given->text +
                                 ". Give --all or --limit.");
    }
    return std::numeric_limits<std::size_t>::max();
}

} // namespace

Pager::Pager(std::string command, const host::OptionValues& values, const Shape& shape)
    : m_command(std::move(command)), m_values(values),
      m_writer(MakeWriter(host::OutputFormatFrom(values), shape)), m_below(BelowFrom(values)),
      m_limit(LimitOf(values))
{
}

bool Pager::Take(std::int64_t number, const Record& record)
{
    // What begins below the last number would pass over another row of the same.
    m_hasMore = m_taken >= m_limit && number != m_last;
    if (m_hasMore)
    {
        return false;
    }
    m_writer->Add(record);
    ++m_taken;
    m_last = number;
    return true;
}

int Pager::Run(const std::function<void(Pager&)>& feed)
{
    try
    {
        feed(*this);
    }
    catch (const host::Refusal& refusal)
    {
        if (!m_writer->HasBegun())
        {
            throw;
        }
        m_writer->Fail(host::WithoutPasswords(refusal.what()), refusal.Status());
        host::Complain(refusal.what());
        return refusal.Status();
    }
    m_writer->Finish(m_hasMore ? CommandOfNextPage(m_command, m_values, m_last) : std::string());
    return host::kDone;
}

} // namespace listing
