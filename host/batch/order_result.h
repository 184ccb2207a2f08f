#pragma once

#include "host/check_request.h"
#include "host/check_result.h"
#include "host/exit_status.h"

#include <optional>
#include <string>

namespace batch
{

enum class Ending
{
    Judged,
    Recovered,    ///< judged by a run that was cut off; the verdict is the history's
    NotJudged,    ///< the order or its terms do not allow it
    Held,         ///< another host judges it now
    DatabaseAway, ///< it can be judged once the database answers
    Gone,         ///< its file was taken away, or became another one, meanwhile
};

/// What became of one order. Texts are UTF-8.
struct OrderResult
{
    std::string path;
    Ending ending = Ending::NotJudged;
    std::string error; ///< why it was not judged, with the remedy
    std::optional<host::CheckRequest> request;
    host::CheckResult check;         ///< when it was judged or recovered
    int status = host::kCouldNotRun; ///< as a check of this order alone would end
    double seconds = 0.0;

    bool IsJudged() const { return ending == Ending::Judged || ending == Ending::Recovered; }
    /// Accepted on amounts that the machine kept from being worked out. The verdict stands in the
    /// history, but the order is not done: it is judged again by the next run.
    bool IsForNextRun() const
    {
        return IsJudged() && host::ExitStatusOf(check) == host::kAmountsUnknown &&
               !check.amounts.isOrdersFault;
    }
    /// Judged, but on rules, holders or amounts that are not all known.
    bool IsIncomplete() const
    {
        return ending == Ending::Judged && (!check.rulesComplete || !check.lookupsComplete);
    }
};

/// The rank of an exit status among those of many orders: the higher, the graver.
int GravityOf(int status);

} // namespace batch
