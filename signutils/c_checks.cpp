#include "signutils/c_results.h"
#include "signutils/c_session.h"
#include "support/codepage.h"

using signutils::GivenTexts;
using signutils::Narrow;
using signutils::Result;
using signutils::TextResult;
using signutils::Wide;
using signutils::WithSession;

namespace
{

// Refused, not 0: a host that does not look at the status must not let an order pass.
constexpr std::uint32_t kFailedVerdict = SIGNUTILS_REFUSED;

constexpr SignUtilsCheck kNoCheck = {.size = sizeof(SignUtilsCheck),
                                     .ran = 0,
                                     .rulesComplete = 0,
                                     .lookupsComplete = 0,
                                     .amountsKnown = 0,
                                     .verdict = kFailedVerdict,
                                     .totalAmount = 0.0,
                                     .maxOrderAmount = 0.0,
                                     .orderCount = 0,
                                     .rowsDue = 0,
                                     .rowsWritten = 0,
                                     .journal = SIGNUTILS_JOURNAL_NOT_DUE,
                                     .report = SIGNUTILS_REPORT_NOT_DUE,
                                     .reportFileId = 0,
                                     .problem = "",
                                     .amountsProblem = "",
                                     .currency = "",
                                     .reasonCode = "",
                                     .reasonText = "",
                                     .reportProblem = ""};

constexpr std::int32_t Code(JournalState state) noexcept
{
    static_assert(static_cast<int>(JournalState::NotDue) == SIGNUTILS_JOURNAL_NOT_DUE &&
                  static_cast<int>(JournalState::Written) == SIGNUTILS_JOURNAL_WRITTEN &&
                  static_cast<int>(JournalState::Spooled) == SIGNUTILS_JOURNAL_SPOOLED &&
                  static_cast<int>(JournalState::Lost) == SIGNUTILS_JOURNAL_LOST);
    return static_cast<std::int32_t>(state);
}

constexpr std::int32_t Code(ReportState state) noexcept
{
    static_assert(static_cast<int>(ReportState::NotDue) == SIGNUTILS_REPORT_NOT_DUE &&
                  static_cast<int>(ReportState::HandedOn) == SIGNUTILS_REPORT_HANDED_ON &&
                  static_cast<int>(ReportState::NotHandedOn) == SIGNUTILS_REPORT_NOT_HANDED_ON);
    return static_cast<std::int32_t>(state);
}

SignUtilsCheck RecordOf(const CheckOutcome& outcome, GivenTexts& texts)
{
    // By position, so that a member which the outcome gains does not compile until it is here too.
    const auto& [ran, rulesComplete, lookupsComplete, amountsKnown, verdict, problem,
                 amountsProblem, totalAmount, maxOrderAmount, orderCount, currency, reasonCode,
                 reasonText, rowsDue, rowsWritten, journal, report, reportProblem, reportFileId] =
        outcome;
    return {.size = sizeof(SignUtilsCheck),
            .ran = ran ? 1 : 0,
            .rulesComplete = rulesComplete ? 1 : 0,
            .lookupsComplete = lookupsComplete ? 1 : 0,
            .amountsKnown = amountsKnown ? 1 : 0,
            .verdict = verdict,
            .totalAmount = totalAmount,
            .maxOrderAmount = maxOrderAmount,
            .orderCount = orderCount,
            .rowsDue = rowsDue,
            .rowsWritten = rowsWritten,
            .journal = Code(journal),
            .report = Code(report),
            .reportFileId = static_cast<std::uint32_t>(reportFileId),
            .problem = texts.KeepNarrow(problem.SafeGetString()),
            .amountsProblem = texts.KeepNarrow(amountsProblem.SafeGetString()),
            .currency = texts.KeepNarrow(currency.SafeGetString()),
            .reasonCode = texts.KeepNarrow(reasonCode.SafeGetString()),
            .reasonText = texts.KeepWide(reasonText.SafeGetString()),
            .reportProblem = texts.KeepNarrow(reportProblem.SafeGetString())};
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsCheckSignRules(SignUtilsSession* session,
                                                       const char* fileName, const char* signers,
                                                       uint32_t* verdict)
{
    const Result<std::uint32_t> given("verdict", verdict, kFailedVerdict);
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts&)
                       {
                           std::uint32_t& place = given.Place();
                           const std::string file = Narrow("fileName", fileName);
                           const std::wstring names = Wide("signers", signers);
                           place = static_cast<std::uint32_t>(
                               object.CheckSignRules(file.c_str(), names.c_str()));
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsCheckSignRulesFor(SignUtilsSession* session,
                                                          const char* signers, const char* fileName,
                                                          double totalAmount, double maxOrderAmount,
                                                          const char* currency, uint32_t* verdict,
                                                          const char** reasonCode,
                                                          const char** reasonText)
{
    const Result<std::uint32_t> given("verdict", verdict, kFailedVerdict);
    const TextResult givenCode("reasonCode", reasonCode, "");
    const TextResult givenText("reasonText", reasonText, "");
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts& texts)
                       {
                           std::uint32_t& verdictPlace = given.Place();
                           const char*& codePlace = givenCode.Place();
                           const char*& textPlace = givenText.Place();
                           const std::wstring names = Wide("signers", signers);
                           const std::string file = Narrow("fileName", fileName);
                           const std::string currencyName =
                               signutils::OptionalNarrow("currency", currency);

                           TSimpleString code;
                           TSimpleStringW text;
                           const auto judged = static_cast<std::uint32_t>(object.CheckSignRulesFor(
                               code, text, names.c_str(), file.c_str(), totalAmount, maxOrderAmount,
                               currencyName.c_str()));
                           const char* const keptCode = texts.KeepNarrow(code.SafeGetString());
                           const char* const keptText = texts.KeepWide(text.SafeGetString());
                           verdictPlace = judged;
                           codePlace = keptCode;
                           textPlace = keptText;
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetLastCheck(SignUtilsSession* session,
                                                     SignUtilsCheck* check)
{
    const signutils::RecordResult<SignUtilsCheck> given("check", check, kNoCheck);
    return WithSession(session,
                       [&](const SignUtils& object, GivenTexts& texts)
                       {
                           given.Require();
                           given.Fill(RecordOf(object.GetLastCheck(), texts));
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetExtraInfo(SignUtilsSession* session,
                                                     const char** extraInfo)
{
    const TextResult given("extraInfo", extraInfo, "");
    return WithSession(session,
                       [&](const SignUtils& object, GivenTexts& texts)
                       {
                           const char*& place = given.Place();
                           place = texts.KeepNarrow(object.GetExtraInfo().SafeGetString());
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetPSRWarning(SignUtilsSession* session,
                                                      const char** report)
{
    const TextResult given("report", report, "");
    return WithSession(session,
                       [&](const SignUtils& object, GivenTexts& texts)
                       {
                           const char*& place = given.Place();
                           const TSimpleString document = object.GetPSRWarning();
                           // In UTF-8, unless memory ran out before the check encoded it.
                           place = support::FindMalformedUtf8(document.SafeGetString())
                                       ? texts.KeepNarrow(document.SafeGetString())
                                       : texts.Keep(document.SafeGetString());
                       });
}
