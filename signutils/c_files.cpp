#include "services/tag_rc.h"
#include "signutils/c_results.h"
#include "signutils/c_session.h"
#include "support/codepage.h"

using signutils::CallRefused;
using signutils::GivenTexts;
using signutils::Narrow;
using signutils::OptionalNarrow;
using signutils::WithSession;

namespace
{

constexpr std::size_t kErrorTextSize = 256;
constexpr std::size_t kCurrencySize = 4;
constexpr std::uint32_t kNotHandedOn = 0x00C90004U;

constexpr SignUtilsAmounts kNoAmounts = {.size = sizeof(SignUtilsAmounts),
                                         .orderCount = 0,
                                         .totalAmount = 0.0,
                                         .maxOrderAmount = 0.0,
                                         .currency = "",
                                         .errors = ""};

constexpr SignUtilsHandOff kNoHandOff = {.size = sizeof(SignUtilsHandOff),
                                         .result = kNotHandedOn,
                                         .fileId = 0,
                                         .errorCode = 0,
                                         .systemCode = 0,
                                         .reserved = 0};

[[noreturn]] void Fail(const char* what, const char* narrowReason)
{
    throw CallRefused{SIGNUTILS_FAILED,
                      std::string(what) + ": " + support::Utf8FromNarrow(narrowReason)};
}

[[noreturn]] void FailConversion(const char* errorText)
{
    Fail("The order file could not be converted", errorText);
}

/// The service gives no text when the report did not even reach a temporary file.
const char* ReasonOf(const tag_Rc& rc)
{
    return *rc.text == '\0' ? "it cannot be written to a temporary file. Check the extension and "
                              "the folder for temporary files."
                            : rc.text;
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsExecWorkFmt(SignUtilsSession* session, const char* fileName)
{
    return WithSession(
        session,
        [&](SignUtils& object, GivenTexts&)
        {
            char errorText[kErrorTextSize] = {};
            if (object.ExecWorkFmt(Narrow("fileName", fileName).c_str(), errorText) == 0)
            {
                FailConversion(errorText);
            }
        });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGetMaxAmountFile(SignUtilsSession* session,
                                                         const char* fileName,
                                                         SignUtilsAmounts* amounts)
{
    const signutils::RecordResult<SignUtilsAmounts> given("amounts", amounts, kNoAmounts);
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts& texts)
                       {
                           given.Require();
                           const std::string file = Narrow("fileName", fileName);
                           SignUtilsAmounts record = kNoAmounts;
                           int orderCount = 0;
                           char currency[kCurrencySize] = {};
                           char errorText[kErrorTextSize] = {};
                           if (object.GetMaxAmountFile(file.c_str(), record.totalAmount,
                                                       record.maxOrderAmount, orderCount, currency,
                                                       errorText) == 0)
                           {
                               FailConversion(errorText);
                           }
                           record.orderCount = orderCount;
                           record.currency = texts.KeepNarrow(currency);
                           record.errors = texts.KeepNarrow(errorText);
                           given.Fill(record);
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsGeneratePSR(
    SignUtilsSession* session, const char* initiatingParty, const char* orgnlMsgId,
    const char* orgnlMsgNmId, const char* msgId, int32_t received, const char* reasonCode,
    const char* reasonInfo, int32_t nbOfTxs, double ctrlSum, const char** report)
{
    const signutils::TextResult given("report", report, "");
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts& texts)
                       {
                           const char*& place = given.Place();
                           TSimpleString document;
                           object.GeneratePSR(
                               document, Narrow("initiatingParty", initiatingParty).c_str(),
                               Narrow("orgnlMsgId", orgnlMsgId).c_str(),
                               Narrow("orgnlMsgNmId", orgnlMsgNmId).c_str(),
                               Narrow("msgId", msgId).c_str(), received,
                               OptionalNarrow("reasonCode", reasonCode).c_str(),
                               OptionalNarrow("reasonInfo", reasonInfo).c_str(), nbOfTxs, ctrlSum);
                           place = texts.KeepNarrow(document.SafeGetString());
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsAddPaymentStatusReport(
    SignUtilsSession* session, const char* report, const char* extension, const char* service,
    const char* partner, const char* target, SignUtilsHandOff* handOff)
{
    const signutils::RecordResult<SignUtilsHandOff> given("handOff", handOff, kNoHandOff);
    return WithSession(session,
                       [&](SignUtils& object, GivenTexts&)
                       {
                           given.Require();
                           TSimpleString document(signutils::Utf8("report", report).c_str());
                           const std::string ending = Narrow("extension", extension);
                           const std::string serviceName =
                               signutils::NarrowUpTo("service", service, signutils::kIdentifier);
                           const std::string partnerName =
                               signutils::NarrowUpTo("partner", partner, signutils::kIdentifier);
                           const std::string store = OptionalNarrow("target", target);

                           tag_Rc rc = {};
                           unsigned long fileId = 0;
                           SignUtilsHandOff record = kNoHandOff;
                           record.result = static_cast<std::uint32_t>(object.AddPaymentStatusReport(
                               document, ending.c_str(), serviceName.c_str(), partnerName.c_str(),
                               store.c_str(), rc, &fileId));
                           record.fileId = static_cast<std::uint32_t>(fileId);
                           record.errorCode = rc.code;
                           record.systemCode = rc.systemCode;
                           given.Fill(record);
                           if (record.result != 0)
                           {
                               Fail("The report was not handed on", ReasonOf(rc));
                           }
                       });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsLogEvent(SignUtilsSession* session, uint16_t level,
                                                 const char* message)
{
    return WithSession(session, [&](SignUtils& object, GivenTexts&)
                       { object.LogEvent(level, signutils::Wide("message", message).c_str()); });
}
