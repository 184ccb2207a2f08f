#include "host/batch/metrics_file.h"

#include "host/batch/order_path.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "signutils/measures.h"
#include "support/codepage.h"
#include "support/measures_place.h"

#include <exception>

namespace batch
{

namespace
{

// Servers fetch every 15 to 60 seconds.
constexpr std::chrono::seconds kBetweenTexts(15);

// A mistyped name must not cost a database or an order.
void RefuseOther(const std::string& path, const host::OptionValue& given)
{
    if (const char* const obstacle = support::ObstacleToMeasures(path); obstacle != nullptr)
    {
        throw host::UsageRefusal(given.origin + ": the measures cannot take the place of " +
                                 host::Quoted(given.text) + ": " + obstacle + ". " +
                                 support::kOtherMeasuresFile);
    }
}

std::string PathFrom(const host::OptionValues& values, const std::string& judged)
{
    const host::OptionValue* const given = values.Find("metrics");
    if (given == nullptr)
    {
        return {};
    }
    if (given->text.empty())
    {
        throw host::UsageRefusal(given->origin +
                                 " is empty. Name the file that the measures go to, or leave it "
                                 "out.");
    }
    const std::string path = host::NarrowText(*given);
    RefuseAmongOrders(*given, judged);
    RefuseOther(path, *given);
    return path;
}

} // namespace

MetricsFile::MetricsFile(const host::OptionValues& values, const std::string& judged)
    : m_path(PathFrom(values, judged))
{
    if (!m_path.empty())
    {
        signutils::StartMeasures();
        Write();
    }
}

MetricsFile::~MetricsFile()
{
    try
    {
        if (!m_path.empty())
        {
            Write();
        }
    }
    catch (const std::exception&)
    {
        // What the run has judged is told and recorded; want of memory at its end changes nothing.
    }
}

void MetricsFile::Turn()
{
    if (!m_path.empty() && Clock::now() >= m_next)
    {
        Write();
    }
}

void MetricsFile::Write()
{
    TSimpleString problem;
    signutils::WriteMeasures(m_path.c_str(), problem);
    m_next = Clock::now() + kBetweenTexts;
    if (!problem.IsEmpty() && problem.SafeGetString() != m_told)
    {
        host::Warn(support::Utf8FromNarrow(problem.SafeGetString()));
    }
    m_told = problem.SafeGetString();
}

} // namespace batch
