#pragma once

#include <string>

struct CheckOutcome;

namespace soak
{

/// What a host knows of a check, as one JSON object a line on standard output. A line is written by
/// one call, so that a reader never sees half of one, and only when the check is over: what stands
/// there is acknowledged.
struct Told
{
    std::string order;   ///< the name that the check gave its file and its events
    long long begun = 0; ///< microseconds of a clock that all processes of the machine share
    long long ended = 0;
    unsigned long verdict = 0;
    unsigned long expected = 0;
    bool asked = false; ///< for a report of a refusal
};

long long Microseconds();
void Tell(const Told& told, const CheckOutcome& outcome);
/// Any other line.
void TellLine(std::string line);

} // namespace soak
