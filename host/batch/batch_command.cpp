#include "host/batch/batch_command.h"

#include "host/batch/crew.h"
#include "host/batch/database_identity.h"
#include "host/batch/journal_place.h"
#include "host/batch/leftovers.h"
#include "host/batch/metrics_file.h"
#include "host/batch/order_folder.h"
#include "host/batch/order_list.h"
#include "host/batch/order_path.h"
#include "host/batch/run_set_up.h"
#include "host/batch/teller.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/output_format.h"
#include "host/refusal.h"
#include "host/scratch/interruption.h"
#include "port/files.h"

namespace batch
{

namespace
{

using host::OptionValue;
using host::OptionValues;
using host::UsageRefusal;

constexpr const char* kBatchHolder = "signcheck batch";
constexpr auto kBetweenLooks = std::chrono::milliseconds(100);

/// The orders as they were found, and where their progress is kept.
struct Source
{
    std::string folder; ///< absolute; empty for a list
    std::vector<Order> orders;
    std::vector<std::string> workFiles;
    std::string journal;
};

Source SourceFrom(const OptionValues& values, const RunTerms& run, const OptionValue& given,
                  bool isFolder)
{
    Source source;
    const std::string path = AbsolutePath(given.text);
    if (!isFolder)
    {
        if (run.isTermsBeside)
        {
            throw UsageRefusal("option --sidecar goes with a folder; " + given.origin +
                               " is a list, which has the terms itself. Leave one of them out.");
        }
        source.orders = ReadOrderList(given, values);
        source.journal = JournalPath(values, path);
        return source;
    }
    FolderContent content = ReadOrderFolder(path);
    source.folder = path;
    source.orders = std::move(content.orders);
    source.workFiles = std::move(content.workFiles);
    source.journal = JournalPath(values, path);
    return source;
}

// Orders that were judged before and are still the same files go.
std::size_t LeaveOutDone(std::vector<Order>& orders, const ProgressJournal& journal)
{
    return std::erase_if(orders,
                         [&journal](const Order& order)
                         {
                             const auto version =
                                 order.fault.empty() ? VersionOf(order.path) : std::nullopt;
                             return version && journal.IsDone(order.key, *version);
                         });
}

void Tidy(const Source& source, ProgressJournal& journal)
{
    const std::string before =
        source.folder.empty() ? std::string() : source.folder + port::PathSeparator();
    journal.Tidy([&before](const std::string& key) { return VersionOf(before + key).has_value(); });
}

void TellLeftovers(const Source& source, const OptionValues& values)
{
    const auto age = RemovalAge(values);
    if (source.folder.empty())
    {
        return;
    }
    const Leftovers leftovers = TendLeftovers(source.folder, source.workFiles, age);
    if (leftovers.removed > 0)
    {
        host::Warn(std::to_string(leftovers.removed) +
                   " work files that a killed run had left were removed.");
    }
    if (const std::string warning = LeftoverWarning(source.folder, leftovers); !warning.empty())
    {
        host::Warn(warning);
    }
}

// Whether an order is all that a run that goes on would meet again and again.
bool EndsRun(const OrderResult& result)
{
    return result.ending == Ending::DatabaseAway;
}

void JudgeAll(std::size_t jobs, const RunTerms& run, ProgressJournal& journal, OrderQueue& queue,
              Teller& teller, MetricsFile& metrics)
{
    Crew crew(jobs, run, journal, queue,
              [&](const Order&, OrderResult&& result)
              {
                  teller.Tell(result);
                  if (EndsRun(result))
                  {
                      queue.Stop();
                  }
              });
    while (!crew.WaitFor(kBetweenLooks))
    {
        metrics.Turn();
        if (scratch::Interruption::HasCome())
        {
            queue.Stop();
        }
    }
    crew.RaiseFailure();
}

} // namespace

int RunBatch(const OptionValues& values)
{
    const auto start = std::chrono::steady_clock::now();
    const OptionValue* const given = values.Find("orders");
    if (given == nullptr || given->text.empty())
    {
        throw UsageRefusal("argument ORDERS is missing. Give the folder of the orders or a list of "
                           "them, as in: signcheck batch /var/spool/orders --db CONN …");
    }
    const bool isFolder = port::FolderExists(host::NarrowText(*given).c_str());
    const std::size_t jobs = JobsFrom(values);
    RemovalAge(values);
    const RunTerms run = RunTermsFrom(values, isFolder, kBatchHolder);
    Source source = SourceFrom(values, run, *given, isFolder);
    MetricsFile metrics(values, source.folder);
    RequireDatabase(run.connection);
    ProgressJournal journal(source.journal, kBatchHolder);
    journal.RequireDatabase(DatabaseIdentity(run.connection));
    Tidy(source, journal);
    TellLeftovers(source, values);

    const std::size_t skipped = LeaveOutDone(source.orders, journal);
    const scratch::Interruption interruption;
    Teller teller(host::OutputFormatFrom(values), source.orders.size(), start);
    teller.Counts().AddSkipped(skipped);
    OrderQueue queue;
    for (Order& order : source.orders)
    {
        queue.Push(std::move(order));
    }
    queue.Close();
    JudgeAll(jobs, run, journal, queue, teller, metrics);
    teller.Counts().SetLeft(source.orders.size() - teller.Counts().Told());
    teller.Sum();
    return teller.Counts().Status();
}

} // namespace batch
