#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>

// What the C interface refuses, one row for each text that it takes. No handler for invalid
// parameters is installed here: a text that got through to a setter would end the test.

using namespace testing_support;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace
{

enum class Kind
{
    Narrow, ///< Windows-1252
    Wide,   ///< any characters
};

enum class Null
{
    Refused,
    Empty,
};

enum class ErrorOf
{
    Session,
    Thread,
};

struct ArgumentTextCase
{
    const char* name;     ///< of the test
    const char* argument; ///< as the error text calls it
    std::function<SignUtilsStatus(SignUtilsSession*, const char*)> call;
    Kind kind = Kind::Narrow;
    Null null = Null::Refused;
    std::size_t longest = 0; ///< 0: no limit
    ErrorOf error = ErrorOf::Session;
};

void PrintTo(const ArgumentTextCase& textCase, std::ostream* stream)
{
    *stream << textCase.name;
}

SignUtilsStatus WithContract(SignUtilsSession* session, const char* partner, const char* service,
                             const char* client, const char* target)
{
    return SignUtilsSetContractInfo(session, 1, 9, partner, service, client, 1, target);
}

SignUtilsStatus Judge(SignUtilsSession* session, const char* file, const char* signers)
{
    std::uint32_t verdict = 0;
    return SignUtilsCheckSignRules(session, file, signers, &verdict);
}

SignUtilsStatus JudgeFor(SignUtilsSession* session, const char* signers, const char* file,
                         const char* currency)
{
    std::uint32_t verdict = 0;
    const char* code = nullptr;
    const char* text = nullptr;
    return SignUtilsCheckSignRulesFor(session, signers, file, 1.0, 1.0, currency, &verdict, &code,
                                      &text);
}

SignUtilsStatus Report(SignUtilsSession* session, const char* party, const char* orgnlMsgId,
                       const char* orgnlMsgNmId, const char* msgId, const char* code,
                       const char* info)
{
    const char* report = nullptr;
    return SignUtilsGeneratePSR(session, party, orgnlMsgId, orgnlMsgNmId, msgId, 0, code, info, 0,
                                -1.0, &report);
}

SignUtilsStatus HandOn(SignUtilsSession* session, const char* report, const char* extension,
                       const char* service, const char* partner, const char* target)
{
    SignUtilsHandOff handOff = {};
    handOff.size = sizeof handOff;
    return SignUtilsAddPaymentStatusReport(session, report, extension, service, partner, target,
                                           &handOff);
}

SignUtilsStatus Amounts(SignUtilsSession* session, const char* file)
{
    SignUtilsAmounts amounts = {};
    amounts.size = sizeof amounts;
    return SignUtilsGetMaxAmountFile(session, file, &amounts);
}

SignUtilsStatus NamesOf(SignUtilsSession* session, const char* certificate)
{
    std::int32_t found = 0;
    const char* first = nullptr;
    const char* last = nullptr;
    return SignUtilsGetSignerNames(session, certificate, &found, &first, &last);
}

SignUtilsStatus Infos(SignUtilsSession* session, const char* holderId)
{
    const CSigners signers;
    SignUtilsHolder holder = {};
    holder.size = sizeof holder;
    return SignUtilsGetSignerInfos(session, holderId, signers, &holder);
}

SignUtilsStatus AddSigner(SignUtilsSession*, const char* certificate)
{
    const CSigners signers;
    return SignUtilsSignersAdd(signers, certificate);
}

SignUtilsStatus CreateWithLog(SignUtilsSession*, const char* logFile)
{
    SignUtilsSession* created = nullptr;
    const SignUtilsStatus status = SignUtilsCreate(nullptr, logFile, &created);
    SignUtilsDestroy(created);
    return status;
}

SignUtilsStatus OpenTrace(SignUtilsSession*, const char* path)
{
    SignUtilsTrace* trace = nullptr;
    const SignUtilsStatus status = SignUtilsTraceOpen(path, &trace);
    SignUtilsTraceClose(trace);
    return status;
}

SignUtilsStatus RegisterProtocol(SignUtilsSession*, const char* name)
{
    TProtocolCatalogue::Register(4711, nullptr);
    return SignUtilsRegisterProtocol(4711, name);
}

#define TEXT_CALL(...) [](SignUtilsSession* s, const char* text) { return __VA_ARGS__; }

const ArgumentTextCase kArgumentTexts[] = {
    {"Partner", "partner", TEXT_CALL(WithContract(s, text, "S", "C", "")), Kind::Narrow,
     Null::Refused, 8},
    {"Service", "service", TEXT_CALL(WithContract(s, "P", text, "C", "")), Kind::Narrow,
     Null::Refused, 8},
    {"Client", "client", TEXT_CALL(WithContract(s, "P", "S", text, "")), Kind::Narrow,
     Null::Refused, 8},
    {"HandOffTarget", "handOffTarget", TEXT_CALL(WithContract(s, "P", "S", "C", text)),
     Kind::Narrow, Null::Empty, 260},
    {"Format1", "format1", TEXT_CALL(SignUtilsSetFormatInfo(s, text, "", ""))},
    {"Format2", "format2", TEXT_CALL(SignUtilsSetFormatInfo(s, "", text, ""))},
    {"Format3", "format3", TEXT_CALL(SignUtilsSetFormatInfo(s, "", "", text)), Kind::Narrow,
     Null::Empty},
    {"Currency", "currency", TEXT_CALL(SignUtilsSetAmountInfo(s, 1.0, 1.0, text))},
    {"InitiatingParty", "initiatingParty", TEXT_CALL(SignUtilsSetMessageInfo(s, text, "", "", ""))},
    {"OrgnlMsgId", "orgnlMsgId", TEXT_CALL(SignUtilsSetMessageInfo(s, "", text, "", ""))},
    {"OrgnlMsgNmId", "orgnlMsgNmId", TEXT_CALL(SignUtilsSetMessageInfo(s, "", "", text, ""))},
    {"MsgId", "msgId", TEXT_CALL(SignUtilsSetMessageInfo(s, "", "", "", text))},
    {"PsrService", "psrService", TEXT_CALL(SignUtilsSetPSRWarning(s, text)), Kind::Narrow,
     Null::Refused, 8},
    {"ConnexionString", "connexionString", TEXT_CALL(SignUtilsSetConnexionString(s, text))},
    {"RefRequest", "refRequest", TEXT_CALL(SignUtilsSetRefRequest(s, text))},
    {"FileNameOfACheck", "fileName", TEXT_CALL(Judge(s, text, "Ana Ruiz"))},
    {"SignersOfACheck", "signers", TEXT_CALL(Judge(s, "order.xml", text)), Kind::Wide},
    {"SignersOfTheRules", "signers", TEXT_CALL(JudgeFor(s, text, "order.xml", "EUR")), Kind::Wide},
    {"FileNameOfTheRules", "fileName", TEXT_CALL(JudgeFor(s, "Ana Ruiz", text, "EUR"))},
    {"CurrencyOfTheRules", "currency", TEXT_CALL(JudgeFor(s, "Ana Ruiz", "order.xml", text)),
     Kind::Narrow, Null::Empty},
    {"CertificateName", "certificateName", TEXT_CALL(NamesOf(s, text)), Kind::Wide},
    {"HolderId", "holderId", TEXT_CALL(Infos(s, text))},
    {"CertificateOfASigner", "certificate", AddSigner, Kind::Wide, Null::Refused, 0,
     ErrorOf::Thread},
    {"FileNameOfAConversion", "fileName", TEXT_CALL(SignUtilsExecWorkFmt(s, text))},
    {"FileNameOfAmounts", "fileName", TEXT_CALL(Amounts(s, text))},
    {"PartyOfAReport", "initiatingParty", TEXT_CALL(Report(s, text, "", "", "", "", ""))},
    {"OrderOfAReport", "orgnlMsgId", TEXT_CALL(Report(s, "", text, "", "", "", ""))},
    {"MessageNameOfAReport", "orgnlMsgNmId", TEXT_CALL(Report(s, "", "", text, "", "", ""))},
    {"MessageOfAReport", "msgId", TEXT_CALL(Report(s, "", "", "", text, "", ""))},
    {"ReasonCode", "reasonCode", TEXT_CALL(Report(s, "", "", "", "", text, "")), Kind::Narrow,
     Null::Empty},
    {"ReasonInfo", "reasonInfo", TEXT_CALL(Report(s, "", "", "", "", "", text)), Kind::Narrow,
     Null::Empty},
    {"HandedOnReport", "report", TEXT_CALL(HandOn(s, text, "psr", "STATUS", "PARTNER1", "")),
     Kind::Wide},
    {"Extension", "extension", TEXT_CALL(HandOn(s, "<a/>", text, "STATUS", "PARTNER1", ""))},
    {"HandOffService", "service", TEXT_CALL(HandOn(s, "<a/>", "psr", text, "PARTNER1", "")),
     Kind::Narrow, Null::Refused, 8},
    {"HandOffPartner", "partner", TEXT_CALL(HandOn(s, "<a/>", "psr", "STATUS", text, "")),
     Kind::Narrow, Null::Refused, 8},
    {"TargetOfAReport", "target", TEXT_CALL(HandOn(s, "<a/>", "psr", "STATUS", "PARTNER1", text)),
     Kind::Narrow, Null::Empty},
    {"Message", "message", TEXT_CALL(SignUtilsLogEvent(s, 0, text)), Kind::Wide},
    {"LogFile", "logFile", CreateWithLog, Kind::Narrow, Null::Empty, 259, ErrorOf::Thread},
    {"TracePath", "path", OpenTrace, Kind::Narrow, Null::Refused, 0, ErrorOf::Thread},
    {"ProtocolName", "longName", RegisterProtocol, Kind::Narrow, Null::Empty, 63, ErrorOf::Thread},
};

class CTexts : public SessionTest, public ::testing::WithParamInterface<ArgumentTextCase>
{
protected:
    CTexts()
    {
        // Some rows are paths, and what they name may come to be: a store, a trace.
        std::filesystem::current_path(m_folder.Path());
        PrepareC(m_session, m_database.ConnexionString());
    }
    ~CTexts() override
    {
        TProtocolCatalogue::Register(4711, nullptr);
        std::filesystem::current_path(m_before);
    }

    SignUtilsStatus Call(const char* text) { return GetParam().call(m_session, text); }

    std::string Error() const
    {
        return GetParam().error == ErrorOf::Session ? m_session.Error() : ThreadErrorText();
    }

    /// Whether the argument was taken; what the operation made of it is another matter.
    static bool IsTaken(SignUtilsStatus status)
    {
        return status == SIGNUTILS_OK || status == SIGNUTILS_FAILED;
    }

    std::filesystem::path m_before = std::filesystem::current_path();
    CSession m_session;
};

TEST_P(CTexts, NullIsRefusedWhereItIsNotWelcome)
{
    const SignUtilsStatus status = Call(nullptr);
    if (GetParam().null == Null::Empty)
    {
        EXPECT_TRUE(IsTaken(status)) << status << ' ' << Error();
        return;
    }
    EXPECT_EQ(status, SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(Error(), AllOf(StartsWith(GetParam().argument), HasSubstr("is null")));
}

TEST_P(CTexts, BytesThatAreNoUtf8AreRefusedWithTheirPosition)
{
    EXPECT_EQ(Call("ab\xE9x"), SIGNUTILS_NOT_UTF8);
    EXPECT_EQ(Error(), std::string(GetParam().argument) +
                           ": byte 3 is no well-formed UTF-8. Give texts in UTF-8.");
}

TEST_P(CTexts, CharactersWithoutAPlaceInWindows1252AreRefusedWithTheirPosition)
{
    const SignUtilsStatus status = Call("é\u0141\u20AC"); // the third has a place
    if (GetParam().kind == Kind::Wide)
    {
        EXPECT_TRUE(IsTaken(status)) << status << ' ' << Error();
        return;
    }
    EXPECT_EQ(status, SIGNUTILS_NOT_WINDOWS_1252);
    EXPECT_EQ(Error(), std::string(GetParam().argument) +
                           ": character 2 (U+0141) has no place in Windows-1252. Replace it.");
}

TEST_P(CTexts, LimitCountsCharactersAndIsNamed)
{
    const std::size_t longest = GetParam().longest;
    std::string text;
    for (std::size_t i = 0; i < (longest == 0 ? 1000 : longest); ++i)
    {
        text += "\u20AC"; // three bytes, one character
    }
    EXPECT_TRUE(IsTaken(Call(text.c_str()))) << Error();
    if (longest == 0)
    {
        return;
    }
    text += "x";
    EXPECT_EQ(Call(text.c_str()), SIGNUTILS_TEXT_TOO_LONG);
    EXPECT_THAT(Error(), StartsWith(std::string(GetParam().argument) + ": has " +
                                    std::to_string(longest + 1) + " characters, but at most " +
                                    std::to_string(longest) + " fit. Give"));
}

INSTANTIATE_TEST_SUITE_P(EveryText, CTexts, ::testing::ValuesIn(kArgumentTexts),
                         [](const auto& test) { return std::string(test.param.name); });

class CArguments : public SessionTest
{
};

TEST_F(CArguments, ProtocolNameThatDoesNotFitIsRefusedByTheSetter)
{
    // A C++ host of the same process may register names of any length.
    TProtocolCatalogue::Register(4712, std::string(64, 'n').c_str());
    const CSession session;
    const SignUtilsStatus status = SignUtilsSetContractInfo(session, 1, 4712, "P", "S", "C", 1, "");
    TProtocolCatalogue::Register(4712, nullptr);

    EXPECT_EQ(status, SIGNUTILS_TEXT_TOO_LONG);
    EXPECT_EQ(session.Error(), "protocol (its long name): has 64 characters, but at most 63 fit. "
                               "Register a shorter name for the protocol.");
}

TEST_F(CArguments, CharacterBeyondTheBasicPlaneIsNamedWhole)
{
    const CSession session;
    EXPECT_EQ(SignUtilsSetRefRequest(session, "\U0001F600"), SIGNUTILS_NOT_WINDOWS_1252);
    EXPECT_THAT(session.Error(), HasSubstr("character 1 (U+1F600)"));
}

TEST_F(CArguments, CharactersBehindOneBeyondTheBasicPlaneAreCountedRightly)
{
    const CSigners signers;
    EXPECT_EQ(SignUtilsSignersAdd(signers, "\U0001F600\U0001F600"), SIGNUTILS_OK);
    const CSession session;
    EXPECT_EQ(SignUtilsSetRefRequest(session, "ab\u20AC\u0142"), SIGNUTILS_NOT_WINDOWS_1252);
    EXPECT_THAT(session.Error(), HasSubstr("character 4 (U+0142)"));
}

TEST_F(CArguments, ErrorTextIsEmptyBehindACallThatSucceeded)
{
    const CSession session;
    EXPECT_EQ(session.Error(), "");
    EXPECT_EQ(SignUtilsSetPSRWarning(session, nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_NE(session.Error(), "");
    EXPECT_EQ(SignUtilsSetPSRWarning(session, "STATUS"), SIGNUTILS_OK);
    EXPECT_EQ(session.Error(), "");

    EXPECT_EQ(SignUtilsSignersAdd(nullptr, ""), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_NE(ThreadErrorText(), "");
    EXPECT_EQ(SignUtilsRegisterProtocol(4711, ""), SIGNUTILS_OK);
    EXPECT_EQ(ThreadErrorText(), "");
}

TEST_F(CArguments, ApartmentThatIsUnknownIsRefused)
{
    EXPECT_EQ(SignUtilsComInitialize(2), SIGNUTILS_BAD_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("apartment: 2 is unknown. Give "));
}

TEST_F(CArguments, IndexOfNoSignerIsRefused)
{
    const CSigners signers;
    ASSERT_EQ(SignUtilsSignersAdd(signers, "Ana Ruiz"), SIGNUTILS_OK);
    const char* certificate = nullptr;
    const char* first = nullptr;
    const char* last = nullptr;
    for (const std::int32_t index : {-1, 1, INT32_MAX, INT32_MIN})
    {
        EXPECT_EQ(SignUtilsSignersGet(signers, index, &certificate, &first, &last),
                  SIGNUTILS_BAD_ARGUMENT);
        EXPECT_EQ(ThreadErrorText(), "index: " + std::to_string(index) +
                                         " is none of the 1 signers, which count from 0.");
        EXPECT_STREQ(certificate, "");
    }
}

} // namespace
