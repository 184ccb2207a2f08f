#include "host/batch/watch_command.h"

#include "host/batch/crew.h"
#include "host/batch/database_identity.h"
#include "host/batch/drop_folder.h"
#include "host/batch/journal_place.h"
#include "host/batch/leftovers.h"
#include "host/batch/metrics_file.h"
#include "host/batch/order_folder.h"
#include "host/batch/order_path.h"
#include "host/batch/run_set_up.h"
#include "host/batch/teller.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/output_format.h"
#include "host/refusal.h"
#include "host/scratch/interruption.h"
#include "host/text.h"
#include "port/files.h"

namespace batch
{

namespace
{

using host::OptionValue;
using host::OptionValues;
using host::UsageRefusal;
using std::chrono::seconds;

constexpr const char* kWatchHolder = "signcheck watch";
constexpr std::uint32_t kUsualSettle = 2;
constexpr std::uint32_t kUsualRescan = 30;
constexpr std::uint32_t kLongest = 3600;

std::string FolderFrom(const OptionValues& values)
{
    const OptionValue* const given = values.Find("folder");
    if (given == nullptr)
    {
        throw UsageRefusal("argument FOLDER is missing. Give the folder that orders come into, as "
                           "in: signcheck watch /var/spool/orders --db CONN …");
    }
    if (!port::FolderExists(host::NarrowText(*given).c_str()))
    {
        throw UsageRefusal(given->origin + ": there is no folder " + host::Quoted(given->text) +
                           ". Give the folder that orders come into.");
    }
    return AbsolutePath(given->text);
}

seconds SecondsFrom(const OptionValues& values, const char* option, std::uint32_t standard)
{
    const OptionValue* const value = values.Find(option);
    return seconds(value == nullptr ? standard : host::WholeNumber(*value, kLongest, 1));
}

void TellLeftovers(const std::string& folder, const OptionValues& values)
{
    const Leftovers leftovers =
        TendLeftovers(folder, ReadOrderFolder(folder).workFiles, RemovalAge(values));
    if (const std::string warning = LeftoverWarning(folder, leftovers); !warning.empty())
    {
        host::Warn(warning);
    }
}

/// Says once that the database went away, and once that it is back.
class AwayTeller
{
public:
    void Tell(const OrderResult& result)
    {
        if (result.ending == Ending::DatabaseAway && !m_isAway)
        {
            host::Warn(result.error + " Orders wait and are judged once the database answers.");
        }
        if (result.IsJudged() && m_isAway)
        {
            host::Warn("the database answers again.");
        }
        m_isAway = result.ending == Ending::DatabaseAway || (m_isAway && !result.IsJudged());
    }

private:
    bool m_isAway = false;
};

void Watch(DropFolder& folder, Crew& crew, MetricsFile& metrics)
{
    while (!scratch::Interruption::HasCome() && !crew.WaitFor(std::chrono::milliseconds(0)))
    {
        folder.Turn();
        metrics.Turn();
    }
}

} // namespace

int RunWatch(const OptionValues& values)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string path = FolderFrom(values);
    const std::size_t jobs = JobsFrom(values);
    const DropFolder::Times times = {SecondsFrom(values, "settle", kUsualSettle),
                                     SecondsFrom(values, "rescan", kUsualRescan)};
    RemovalAge(values);
    const RunTerms run = RunTermsFrom(values, true, kWatchHolder);
    MetricsFile metrics(values, path);
    RequireDatabase(run.connection);
    ProgressJournal journal(JournalPath(values, path), kWatchHolder);
    journal.RequireDatabase(DatabaseIdentity(run.connection));
    journal.Tidy([&path](const std::string& key)
                 { return VersionOf(path + port::PathSeparator() + key).has_value(); });
    TellLeftovers(path, values);

    const scratch::Interruption interruption;
    Teller teller(host::OutputFormatFrom(values), 0, start);
    AwayTeller away;
    OrderQueue queue;
    DropFolder folder(path, times, run.isTermsBeside, journal, queue);
    {
        Crew crew(jobs, run, journal, queue,
                  [&](const Order& order, OrderResult&& result)
                  {
                      away.Tell(result);
                      if (folder.Take(order, result))
                      {
                          teller.Tell(result);
                      }
                  });
        Watch(folder, crew, metrics);
        queue.Stop();
        while (!crew.WaitFor(seconds(1)))
        {
            metrics.Turn(); // what is being judged is judged to its end
        }
        crew.RaiseFailure();
    }
    teller.Counts().SetWithoutTerms(folder.WithoutTerms());
    teller.Sum();
    return host::kDone;
}

} // namespace batch
