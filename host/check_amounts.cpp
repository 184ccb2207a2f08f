#include "host/check_amounts.h"

#include "host/amount_text.h"
#include "host/conversion_fault.h"
#include "host/conversion_obstacle.h"
#include "host/sentence.h"
#include "host/text.h"
#include "signutils/check_outcome.h"
#include "support/codepage.h"

#include <algorithm>
#include <utility>

namespace host
{

namespace
{

constexpr const char* kErrorHead = "Err ";
constexpr const char* kErrorSeparator = ";Err ";
// The library keeps no more of the list; what is that long was cut.
constexpr std::size_t kLongestErrorList = 255;
constexpr std::size_t kErrorsInWarning = 3;
// The analysis counts in 64-bit units of 10^-7 and stays at the end of their range.
constexpr double kLargestAmount = 922'337'203'685.4774;

std::string FormatName(const CheckRequest& request)
{
    return request.format ? request.format->Name() : std::string();
}

// "Err 11 (record 1.2) : text;Err 2 (record M1) : text": one entry an error.
std::vector<std::string> SplitErrors(const std::string& narrow)
{
    std::vector<std::string> errors;
    std::size_t begin = 0;
    while (begin < narrow.size())
    {
        const std::size_t end = std::min(narrow.find(kErrorSeparator, begin), narrow.size());
        errors.push_back(Printable(support::Utf8FromNarrow(narrow.substr(begin, end - begin))));
        begin = end + 1;
    }
    if (narrow.size() >= kLongestErrorList)
    {
        errors.back() += "…";
    }
    return errors;
}

std::vector<std::string> FileErrors(const std::string& listed, bool isTraced)
{
    if (listed.empty())
    {
        return {};
    }
    if (!isTraced || !listed.starts_with(kErrorHead))
    {
        return {"errors whose texts are not known, because the check could not be traced"};
    }
    return SplitErrors(listed);
}

std::string WithoutBlankEnd(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1U);
    return text;
}

// As the shell takes it.
std::string AmountsCommand(const CheckRequest& request)
{
    return "signcheck amounts " + Quoted(request.fileShown) + " --format " + FormatName(request);
}

// The library reads a work file that is gone as an empty one. Amounts are never negative, and a
// file without an order has errors that say so.
bool AgreeWithEachOther(const CheckAmounts& amounts)
{
    return amounts.total >= amounts.largest &&
           (amounts.orders > 0 || (amounts.total == 0.0 && !amounts.fileErrors.empty()));
}

std::string OrdersInWords(int orders)
{
    return std::to_string(orders) + (orders == 1 ? " order" : " orders");
}

} // namespace

std::string NameOf(AmountsOrigin origin)
{
    switch (origin)
    {
    case AmountsOrigin::Given:
        return "given";
    case AmountsOrigin::File:
        return "file";
    case AmountsOrigin::Unknown:
        break;
    }
    return "unknown";
}

CheckAmounts AmountsAskedFor(const CheckRequest& request)
{
    CheckAmounts amounts;
    amounts.origin = request.amountsFromFile ? AmountsOrigin::Unknown : AmountsOrigin::Given;
    amounts.total = request.total;
    amounts.largest = request.largest;
    amounts.currency = request.currency;
    return amounts;
}

CheckAmounts AmountsOf(const CheckRequest& request, const CheckOutcome& outcome, bool isTraced)
{
    CheckAmounts amounts = AmountsAskedFor(request);
    const std::string told = outcome.amountsProblem.SafeGetString();
    if (!outcome.amountsKnown)
    {
        amounts.origin = AmountsOrigin::Unknown;
        amounts.problem = WithoutBlankEnd(support::Utf8FromNarrow(told));
        amounts.isOrdersFault = request.amountsFromFile && IsOrdersFault(told);
        const std::string obstacle =
            request.amountsFromFile ? ConversionObstacle(request.file) : std::string();
        amounts.problem += (amounts.problem.empty() || obstacle.empty() ? "" : "; ") + obstacle;
    }
    else if (request.amountsFromFile)
    {
        amounts.origin = AmountsOrigin::File;
        amounts.total = outcome.totalAmount;
        amounts.largest = outcome.maxOrderAmount;
        amounts.orders = outcome.orderCount;
        amounts.currency = support::Utf8FromNarrow(outcome.currency.SafeGetString());
        amounts.fileErrors = FileErrors(told, isTraced);
        if (!AgreeWithEachOther(amounts))
        {
            const std::vector<std::string> fileErrors = std::move(amounts.fileErrors);
            amounts = AmountsAskedFor(request);
            amounts.fileErrors = fileErrors;
            amounts.problem = "work files of the order file vanished while they were read, so that "
                              "total, largest order and count do not agree; no other check or "
                              "conversion of it may run at the same time";
        }
    }
    return amounts;
}

std::string AmountsInWords(const CheckRequest& request, const CheckAmounts& amounts)
{
    if (!amounts.AreKnown())
    {
        return "UNKNOWN" + BecauseOf(amounts.problem);
    }
    // A file without an order has no currency.
    const std::string total = "total " + ShownAmount(amounts.total, amounts.currency) +
                              (amounts.currency.empty() ? "" : " ") + amounts.currency;
    const std::string largest = "largest order " + ShownAmount(amounts.largest, amounts.currency);
    if (amounts.origin == AmountsOrigin::Given)
    {
        return total + ", " + largest + ", as given.";
    }
    return total + ", " + largest + ", " + OrdersInWords(amounts.orders) +
           ", worked out from the file (" + FormatName(request) + ")" +
           (amounts.fileErrors.empty() ? std::string(".") : std::string(", which has ERRORS."));
}

void WarnOfAmounts(const CheckRequest& request, const CheckAmounts& amounts,
                   std::vector<std::string>& warnings)
{
    if (!amounts.AreKnown())
    {
        warnings.push_back("the verdict rests on UNKNOWN amounts: they could not be worked out "
                           "from the order file" +
                           BecauseOf(amounts.problem) +
                           " The rules were judged as if the file held 0; do not take that for an "
                           "acceptance. Repair the cause and check again.");
        return;
    }
    if (amounts.origin == AmountsOrigin::File && amounts.total >= kLargestAmount)
    {
        warnings.push_back("the amounts of the order file reach the END of what can be judged, " +
                           ShownAmount(kLargestAmount, amounts.currency) +
                           ": it holds more than that, or an order whose amount cannot be read, "
                           "which counts as that.");
    }
    if (amounts.fileErrors.empty())
    {
        return;
    }
    std::string listed;
    const std::size_t shown = std::min(amounts.fileErrors.size(), kErrorsInWarning);
    for (std::size_t index = 0; index < shown; ++index)
    {
        listed += (index == 0 ? "" : "; ") + amounts.fileErrors[index];
    }
    warnings.push_back("the order file has ERRORS, and the verdict rests on what could be read of "
                       "it" +
                       BecauseOf(listed) + " " + AmountsCommand(request) + " shows every one.");
}

} // namespace host
