#pragma once

#include "host/batch/order.h"
#include "host/batch/order_queue.h"
#include "host/batch/order_result.h"
#include "host/batch/progress_journal.h"
#include "host/batch/readiness.h"
#include "port/folder_watch.h"

#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace batch
{

/// A folder that orders come into: hands each that is whole to the queue, once. Results may come
/// from any thread; everything else is for one.
class DropFolder
{
public:
    struct Times
    {
        std::chrono::milliseconds settle; ///< a file that was found is whole when it stays so long
        std::chrono::milliseconds rescan; ///< the whole folder is looked at so often
    };

    /// `folder` is absolute, UTF-8. Raises host::Refusal with kCouldNotRun when it cannot be
    /// watched.
    DropFolder(const std::string& folder, const Times& times, bool isTermsBeside,
               const ProgressJournal& journal, OrderQueue& queue);

    /// Waits a moment for what comes, and hands on what is whole. Raises host::Refusal with
    /// kCouldNotRun when the folder is gone.
    void Turn();

    /// What became of an order. Whether it is to be told: one that is tried again is not.
    bool Take(const Order& order, const OrderResult& result);

    /// Orders that wait: to be whole, for the database, in the queue or being judged.
    std::size_t Waiting() const;
    /// Orders that lie in the folder without their terms.
    std::size_t WithoutTerms() const { return m_withoutTerms.size(); }
    /// Whether the database does not answer at the moment.
    bool IsDatabaseAway() const;

private:
    using Time = Readiness::Time;

    void Scan(Time now);
    void TakeNames(const std::vector<std::string>& names, Time now);
    void TakeFinished(Time now);
    void HandOn(Time now);
    void Look(const std::string& name, Time now);
    void TellWithoutTerms(Time now);
    bool IsKnown(const std::string& name) const;
    std::string VersionWithTerms(const std::string& name) const;
    std::string PathOf(const std::string& name) const;

    std::string m_folder;
    Times m_times;
    bool m_isTermsBeside;
    const ProgressJournal& m_journal;
    OrderQueue& m_queue;
    port::FolderWatch m_watch;
    Readiness m_readiness;
    Time m_lastScan;
    Time m_nextScan;
    std::set<std::string> m_atWork;              ///< handed on and not yet back
    std::map<std::string, std::string> m_failed; ///< not judged, with the version that was tried

    struct Lack
    {
        Time since;
        bool isTold = false;
    };
    std::map<std::string, Lack> m_withoutTerms;

    struct Finished
    {
        std::string name;
        Ending ending;
        bool isForNextRun;
    };
    mutable std::mutex m_mutex; ///< of what follows
    std::vector<Finished> m_finished;
    bool m_isAway = false;
    std::chrono::milliseconds m_backOff;
    Time m_pausedUntil;
};

} // namespace batch
