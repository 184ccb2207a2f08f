#include "host/exit_status_table.h"

#include "host/exit_status.h"

#include <algorithm>

namespace host
{

std::vector<Ending> EndingsOf(const CommandSpec& command)
{
    std::vector<Ending> endings = command.endings;
    const std::vector<Ending> common = {
        {kDone, "done"}, {kCouldNotRun, "could not be run"}, {kUsage, "wrong usage"}};
    for (const Ending& ending : common)
    {
        const bool isTold =
            std::any_of(endings.begin(), endings.end(),
                        [&ending](const Ending& told) { return told.status == ending.status; });
        if (!isTold)
        {
            endings.push_back(ending);
        }
    }
    std::sort(endings.begin(), endings.end(),
              [](const Ending& left, const Ending& right) { return left.status < right.status; });
    return endings;
}

std::vector<Ending> EveryEnding()
{
    return {{kDone, "done; of a judgement: accepted"},
            {kFindings, "refused by the rules, something was found, or a question was not answered "
                        "with yes"},
            {kNoRule, "no rule of the contract concerns the signers"},
            {kCouldNotRun, "could not be run"},
            {kAmountsUnknown, "accepted on amounts that could not be worked out"},
            {kUsage, "wrong usage"}};
}

} // namespace host
