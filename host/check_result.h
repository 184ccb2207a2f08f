#pragma once

#include "host/check_amounts.h"
#include "host/check_request.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

namespace host
{

/// What came of one check, texts in UTF-8.
struct CheckResult
{
    std::optional<unsigned int> verdict; ///< none when the library was not asked
    bool ran = false;
    bool rulesComplete = false;
    bool lookupsComplete = true; ///< every holder look-up could be read
    CheckAmounts amounts;
    std::string reasonCode;
    std::string reasonText;
    std::string problem;
    unsigned int rowsDue = 0;
    unsigned int rowsWritten = 0;
    std::string journal;               ///< "not-due", "written", "spooled" or "lost"
    std::optional<long long> eventId;  ///< where it could be read again
    std::vector<std::string> findings; ///< lines of the audit event, one a judged rule and more
    std::string extraInfo;
    std::optional<std::string> report; ///< the document, when one was made
    bool reportHandedOn = false;
    std::string reportProblem; ///< why it was not
    unsigned long reportFileId = 0;
    std::string reportPath; ///< empty when it was not handed on
    std::vector<std::string> warnings;
};

/// "success", "refused", "no-rule" or "not-run".
std::string OutcomeName(const CheckResult& result);

/// The exit status that the result deserves.
int ExitStatusOf(const CheckResult& result);

/// The whole result as one object.
nlohmann::ordered_json CheckAsJson(const CheckRequest& request, const CheckResult& result);

/// The whole result in plain words: what was decided, why, and what was recorded where.
std::string CheckInWords(const CheckRequest& request, const CheckResult& result);

/// What the host must say loudly after the check.
std::vector<std::string> WarningsAfter(const CheckRequest& request, const CheckResult& result);

} // namespace host
