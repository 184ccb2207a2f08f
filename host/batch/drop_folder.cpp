#include "host/batch/drop_folder.h"

#include "host/batch/order_folder.h"
#include "host/batch/order_name.h"
#include "host/batch/order_path.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/file_writer.h"
#include "port/files.h"

#include <algorithm>

namespace batch
{

namespace
{

using std::chrono::milliseconds;
using Clock = Readiness::Clock;

constexpr milliseconds kLongestWait(200);
// Where every change asks to look at the whole folder, judging an order makes some itself.
constexpr milliseconds kBetweenScans(1000);
constexpr milliseconds kFirstBackOff(1000);
constexpr milliseconds kLongestBackOff(60'000);
// So many looks at the whole folder pass before an order without terms is told.
constexpr int kLooksWithoutTerms = 2;

Readiness::Look LookAt(const std::string& path)
{
    Readiness::Look look;
    look.version = VersionOf(path);
    look.hasWriter =
        look.version &&
        port::WriterOf(host::NarrowText({path, "the order"}).c_str()) == port::Writer::Some;
    return look;
}

} // namespace

DropFolder::DropFolder(const std::string& folder, const Times& times, bool isTermsBeside,
                       const ProgressJournal& journal, OrderQueue& queue)
    : m_folder(folder), m_times(times), m_isTermsBeside(isTermsBeside), m_journal(journal),
      m_queue(queue), m_readiness(times.settle), m_nextScan(Clock::now()), m_backOff(kFirstBackOff),
      m_pausedUntil(Clock::now())
{
    if (!m_watch.Open(host::NarrowText({folder, "the folder"}).c_str()))
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the folder " + host::Quoted(folder) +
                                " cannot be watched. Check that this user may read it and that the "
                                "system has a watch left (fs.inotify.max_user_watches and "
                                "max_user_instances).");
    }
}

std::string DropFolder::PathOf(const std::string& name) const
{
    return m_folder + port::PathSeparator() + name;
}

void DropFolder::Turn()
{
    std::vector<std::string> names;
    const port::FolderWatch::Told told =
        m_watch.WaitFor(std::min(kLongestWait, m_times.settle), names);
    const Time now = Clock::now();
    TakeFinished(now);
    TakeNames(names, now);
    if (told == port::FolderWatch::Told::Gone)
    {
        throw host::Refusal(host::kCouldNotRun, "the folder " + host::Quoted(m_folder) +
                                                    " is gone: it was removed, renamed or "
                                                    "unmounted. Put it back and start again.");
    }
    if (told == port::FolderWatch::Told::Changes)
    {
        m_nextScan = std::min(m_nextScan, m_lastScan + kBetweenScans);
    }
    if (now >= m_nextScan)
    {
        Scan(now);
    }
    HandOn(now);
}

void DropFolder::TakeNames(const std::vector<std::string>& names, Time now)
{
    const std::string_view ending = kTermsEnding;
    for (const std::string& name : names)
    {
        // Terms that come behind their order make it whole.
        const bool isTerms = m_isTermsBeside && name.ends_with(ending);
        const std::string order = isTerms ? name.substr(0, name.size() - ending.size()) : name;
        if (KindOfName(order) == NameKind::Order)
        {
            m_readiness.Told(order, now);
        }
    }
}

void DropFolder::Scan(Time now)
{
    m_lastScan = now;
    m_nextScan = now + m_times.rescan;
    std::erase_if(m_failed,
                  [this](const auto& failed) { return !VersionOf(PathOf(failed.first)); });
    std::erase_if(m_withoutTerms,
                  [this](const auto& lacking) { return !VersionOf(PathOf(lacking.first)); });
    TellWithoutTerms(now);
    for (const Order& order : ReadOrderFolder(m_folder).orders)
    {
        if (!IsKnown(order.key))
        {
            m_readiness.Found(order.key, now);
        }
    }
}

// Terms come behind their order, but not long: what still lacks them is told, once.
void DropFolder::TellWithoutTerms(Time now)
{
    for (auto& [name, lack] : m_withoutTerms)
    {
        const std::string terms = PathOf(name) + kTermsEnding;
        if (!lack.isTold && now - lack.since >= kLooksWithoutTerms * m_times.rescan &&
            !IsThere(terms))
        {
            lack.isTold = true;
            host::Warn("the order '" + host::Printable(PathOf(name)) + "' waits for its terms: '" +
                       host::Printable(terms) +
                       "' is not there. Put them there by renaming, or take the order away.");
        }
    }
}

// Nothing is to be done with it until it changes.
bool DropFolder::IsKnown(const std::string& name) const
{
    if (m_atWork.contains(name))
    {
        return true;
    }
    const auto version = VersionOf(PathOf(name));
    if (!version || (host::IsUtf8(name) && m_journal.IsDone(name, *version)))
    {
        return true;
    }
    const auto failed = m_failed.find(name);
    return failed != m_failed.end() && failed->second == VersionWithTerms(name);
}

std::string DropFolder::VersionWithTerms(const std::string& name) const
{
    const std::string order = VersionOf(PathOf(name)).value_or("");
    return m_isTermsBeside ? order + " " + VersionOf(PathOf(name) + kTermsEnding).value_or("")
                           : order;
}

void DropFolder::HandOn(Time now)
{
    {
        const std::lock_guard guard(m_mutex);
        if (now < m_pausedUntil)
        {
            return;
        }
    }
    for (const std::string& name : m_readiness.Due(now))
    {
        if (IsDatabaseAway() && !m_atWork.empty())
        {
            return; // one is enough to see whether it is back
        }
        Look(name, now);
    }
}

void DropFolder::Look(const std::string& name, Time now)
{
    if (m_atWork.contains(name))
    {
        m_readiness.Postpone(name, now + m_times.settle);
        return;
    }
    if (IsKnown(name))
    {
        m_readiness.Forget(name);
        return;
    }
    const Order order = OrderInFolder(m_folder, name);
    const Readiness::Look look =
        order.fault.empty() ? LookAt(order.path) : Readiness::Look{VersionOf(order.path), false};
    // What has the name of the terms and is no file is refused with its reason.
    if (order.fault.empty() && m_isTermsBeside && look.version &&
        !IsThere(order.path + kTermsEnding))
    {
        m_readiness.Forget(name); // its terms will tell
        m_withoutTerms.try_emplace(name, Lack{now});
        return;
    }
    m_withoutTerms.erase(name);
    if (m_readiness.IsWhole(name, look, now))
    {
        m_atWork.insert(name);
        m_queue.Push(order);
    }
}

bool DropFolder::Take(const Order& order, const OrderResult& result)
{
    const std::lock_guard guard(m_mutex);
    const bool isAway = result.ending == Ending::DatabaseAway;
    if (isAway && Clock::now() >= m_pausedUntil)
    {
        m_pausedUntil = Clock::now() + m_backOff;
        m_backOff = std::min(m_backOff * 2, kLongestBackOff);
    }
    if (result.IsJudged())
    {
        m_backOff = kFirstBackOff;
    }
    m_isAway = isAway || (m_isAway && !result.IsJudged());
    m_finished.push_back({order.key, result.ending, result.IsForNextRun()});
    return !isAway && result.ending != Ending::Held;
}

void DropFolder::TakeFinished(Time now)
{
    std::vector<Finished> finished;
    {
        const std::lock_guard guard(m_mutex);
        finished.swap(m_finished);
    }
    for (const Finished& each : finished)
    {
        m_atWork.erase(each.name);
        if (each.isForNextRun)
        {
            m_failed[each.name] = VersionWithTerms(each.name);
            continue;
        }
        switch (each.ending)
        {
        case Ending::DatabaseAway:
            m_readiness.Told(each.name, now); // it was whole
            break;
        case Ending::Held:
            m_readiness.Told(each.name, now);
            m_readiness.Postpone(each.name, now + m_times.settle);
            break;
        case Ending::NotJudged:
            m_failed[each.name] = VersionWithTerms(each.name);
            break;
        case Ending::Judged:
        case Ending::Recovered:
        case Ending::Gone:
            m_failed.erase(each.name);
            break;
        }
    }
}

std::size_t DropFolder::Waiting() const
{
    return m_readiness.Waiting() + m_atWork.size();
}

bool DropFolder::IsDatabaseAway() const
{
    const std::lock_guard guard(m_mutex);
    return m_isAway;
}

} // namespace batch
