#pragma once

#include "host/check_request.h"

#include <string>
#include <vector>

struct CheckOutcome;

namespace host
{

enum class AmountsOrigin
{
    Given,
    File,    ///< worked out from the order file
    Unknown, ///< could not be worked out: the rules were judged on 0
};

/// The amounts that a check was judged on, in the currency's main unit.
struct CheckAmounts
{
    AmountsOrigin origin = AmountsOrigin::Given;
    double total = 0.0;
    double largest = 0.0;
    int orders = 0; ///< of the file
    std::string currency;
    std::string problem;                 ///< why they are unknown, UTF-8
    bool isOrdersFault = false;          ///< they are unknown because the order file is broken
    std::vector<std::string> fileErrors; ///< what the conversion could not read or found wrong

    bool AreKnown() const noexcept { return origin != AmountsOrigin::Unknown; }
};

/// "given", "file" or "unknown".
std::string NameOf(AmountsOrigin origin);

/// The amounts of a check that was not run.
CheckAmounts AmountsAskedFor(const CheckRequest& request);

/// The amounts of a check that was. Errors of the order file have their texts when the check was
/// traced; in one that was not the library tells something else in their place.
CheckAmounts AmountsOf(const CheckRequest& request, const CheckOutcome& outcome, bool isTraced);

/// One paragraph: the amounts and where they come from.
std::string AmountsInWords(const CheckRequest& request, const CheckAmounts& amounts);

/// Adds what must be said loudly: that the amounts are unknown and why, or that the order file has
/// errors.
void WarnOfAmounts(const CheckRequest& request, const CheckAmounts& amounts,
                   std::vector<std::string>& warnings);

} // namespace host
