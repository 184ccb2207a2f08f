#include "amounts/com_guards.h"
#include "amounts/engine_session.h"
#include "amounts/format_conversion.h"
#include "port/kernel.h"
#include "support/odbc_errors.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

using amounts_tests::ComApartment;
using amounts_tests::Fault;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using testing::ElementsAreArray;

namespace
{

using Calls = std::vector<std::string>;

constexpr const char* kExecCall = "FMTWorkExec 7 Work [\"order.xml\" \"order.xml.veu\" ;] []";

// What one conversion did.
struct Outcome
{
    int result;
    std::string errorText;
    Calls calls;
};

Outcome RunWith(const Script& script, const char* fileName = "order.xml")
{
    const ComApartment apartment;
    ScriptedEngine engine(script);
    char errorText[256] = "before";
    const int result = amounts::ExecWorkFmt({fileName, "ISO20022", "pain.001", nullptr}, errorText);
    return {result, errorText, engine.Calls()};
}

TEST(EngineBridge, ConversionTakesItsStepsInOrder)
{
    const Outcome outcome = RunWith(Script());
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.errorText, "before") << "not written on success";
    EXPECT_THAT(outcome.calls,
                ElementsAreArray(Calls{"CreateRun", "FMTConnect QRV", "CreateWork",
                                       "FMTGetWorkDescr 7 ISO20022 pain.001 Work", "GetOptions",
                                       "FMTGetNbTrt", "SetOptions 21", kExecCall, "ReleaseWork",
                                       "Close 7", "ReleaseRun"}));
}

// Sixty-one, as the tables of a conversion have always had.
static_assert(amounts::EngineSession::kBucketCount == 61);

TEST(EngineBridge, MissingFormatsOrFileMakeNoComObject)
{
    const ComApartment apartment;
    const ScriptedEngine engine({});
    for (const amounts::AmountSource& source :
         {amounts::AmountSource{"order.xml", "", "pain.001", nullptr},
          amounts::AmountSource{"order.xml", "ISO20022", "", nullptr},
          amounts::AmountSource{"", "ISO20022", "pain.001", nullptr}})
    {
        char errorText[256] = "before";
        EXPECT_EQ(amounts::ExecWorkFmt(source, errorText), 0);
        TSimpleString missing;
        missing.LoadStringA(287);
        EXPECT_EQ(missing, errorText);
        EXPECT_EQ(amounts::ExecWorkFmt(source, nullptr), 0);
    }
    EXPECT_TRUE(engine.Calls().empty());
}

struct ParameterCase
{
    const char* name;
    SHORT treatments;
    const char* parameters;
};

void PrintTo(const ParameterCase& parameterCase, std::ostream* stream)
{
    *stream << parameterCase.name;
}

const ParameterCase kParameterCases[] = {
    {"OneTreatment", 1, "\"order.xml\" \"order.xml.veu\" ;"},
    {"ThreeTreatments", 3,
     "\"order.xml\" \"order.xml.veu\" ; | \"order.xml\" \"order.xml.veu\" ; | "
     "\"order.xml\" \"order.xml.veu\" ;"},
    {"NoTreatment", 0, ""},
    {"NegativeCount", -1, ""},
};

class BridgeParameters : public testing::TestWithParam<ParameterCase>
{
};

TEST_P(BridgeParameters, HoldTheArgumentOnceForEachTreatment)
{
    Script script;
    script.treatments = GetParam().treatments;
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_THAT(outcome.calls, testing::Contains(std::string("FMTWorkExec 7 Work [") +
                                                 GetParam().parameters + "] []"));
}

INSTANTIATE_TEST_SUITE_P(Counts, BridgeParameters, testing::ValuesIn(kParameterCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(EngineBridge, OptionBitTwoAloneIsCleared)
{
    Script script;
    for (const LONG options : {0, 2, 3, -1})
    {
        script.options = options;
        EXPECT_THAT(RunWith(script).calls,
                    testing::Contains("SetOptions " + std::to_string(options & ~2)));
    }
}

TEST(EngineBridge, AccentsOfThePathReachTheEngine)
{
    EXPECT_THAT(RunWith(Script(), "Caf\xE9 \x80.xml").calls,
                testing::Contains("FMTWorkExec 7 Work [\"Caf\xE9 \x80.xml\" \"Caf\xE9 \x80.xml.veu"
                                  "\" ;] []"));
}

struct FailureCase
{
    const char* name;
    std::function<void(Script&)> change;
    const char* errorText;
    Calls calls;
};

void PrintTo(const FailureCase& failureCase, std::ostream* stream)
{
    *stream << failureCase.name;
}

const Calls kWithConnection = {"CreateRun", "FMTConnect QRV"};
const Calls kWithWork = {"CreateRun", "FMTConnect QRV", "CreateWork"};
constexpr const char* kDescribeCall = "FMTGetWorkDescr 7 ISO20022 pain.001 Work";
const Calls kEnd = {"ReleaseWork", "Close 7", "ReleaseRun"};

Calls Joined(std::initializer_list<Calls> parts)
{
    Calls calls;
    for (const Calls& part : parts)
    {
        calls.insert(calls.end(), part.begin(), part.end());
    }
    return calls;
}

// The last error cannot be had either; its number is shown.
void LoseLastError(Script& script)
{
    script.lastError = E_FAIL;
    script.lastErrorCode = 4711;
}

const FailureCase kFailureCases[] = {
    {"RunObjectIsRefused",
     [](Script& s) { s.createRun = E_ACCESSDENIED; },
     "Initialize CFFmtRun Error : *",
     {"CreateRun"}},
    {"RunObjectIsNull",
     [](Script& s) { s.nullRun = true; },
     "Initialize CFFmtRun Error : *",
     {"CreateRun"}},
    {"ConnectFails",
     [](Script& s)
     {
         s.connect = E_FAIL;
         s.connection = 0;
     },
     "engine text", Joined({kWithConnection, {"LastError", "ReleaseRun"}})},
    {"ConnectFailsWithANumberThatIsClosed", [](Script& s) { s.connect = E_FAIL; }, "engine text",
     Joined({kWithConnection, {"LastError", "Close 7", "ReleaseRun"}})},
    {"ConnectionZero", [](Script& s) { s.connection = 0; }, "engine text",
     Joined({kWithConnection, {"LastError", "ReleaseRun"}})},
    {"ConnectionMinusOneIsRefusedAndClosed", [](Script& s) { s.connection = -1; }, "engine text",
     Joined({kWithConnection, {"LastError", "Close -1", "ReleaseRun"}})},
    {"ConnectFailsWithoutLastError",
     [](Script& s)
     {
         s.connect = E_FAIL;
         s.connection = 0;
         LoseLastError(s);
     },
     "FMTConnect Error : 4711", Joined({kWithConnection, {"LastError", "ReleaseRun"}})},
    {"WorkObjectIsRefused", [](Script& s) { s.createWork = E_ACCESSDENIED; },
     "Initialize Work Object", Joined({kWithWork, {"Close 7", "ReleaseRun"}})},
    {"DescriptionFails", [](Script& s) { s.describe = E_FAIL; }, "engine text",
     Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})},
    {"DescriptionFailsWithoutLastError",
     [](Script& s)
     {
         s.describe = E_FAIL;
         LoseLastError(s);
     },
     "FMTGetWorkDescr Error : 4711", Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})},
    {"WorkIsNotFound", [](Script& s) { s.found = 0; }, "engine text",
     Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})},
    {"WorkIsNotFoundWithoutLastError",
     [](Script& s)
     {
         s.found = 0;
         LoseLastError(s);
     },
     "FMTWorkExec Error : 4711", Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})},
    {"WorkObjectIsNull",
     [](Script& s)
     {
         s.nullWork = true;
         LoseLastError(s);
     },
     "FMTWorkExec Error : 4711",
     Joined(
         {kWithWork,
          {"FMTGetWorkDescr 7 ISO20022 pain.001 (null)", "LastError", "Close 7", "ReleaseRun"}})},
    {"CountFails", [](Script& s) { s.countTreatments = E_FAIL; }, "engine text",
     Joined({kWithWork, {kDescribeCall, "GetOptions", "FMTGetNbTrt", "LastError"}, kEnd})},
    {"CountFailsWithoutLastError",
     [](Script& s)
     {
         s.countTreatments = E_FAIL;
         LoseLastError(s);
     },
     "FMTGetNbTrt Error : 4711",
     Joined({kWithWork, {kDescribeCall, "GetOptions", "FMTGetNbTrt", "LastError"}, kEnd})},
    {"ExecutionFails",
     [](Script& s)
     {
         s.execute = E_FAIL;
         s.errorNumber = 12;
     },
     "engine text n\xB0"
     "12 ",
     Joined({kWithWork,
             {kDescribeCall, "GetOptions", "FMTGetNbTrt", "SetOptions 21", kExecCall, "LastError"},
             kEnd})},
    {"ExecutionHasNoSuccess",
     [](Script& s)
     {
         s.success = 0;
         s.errorNumber = -3;
     },
     "engine text n\xB0-3 ",
     Joined({kWithWork,
             {kDescribeCall, "GetOptions", "FMTGetNbTrt", "SetOptions 21", kExecCall, "LastError"},
             kEnd})},
    {"ExecutionFailsWithoutLastError",
     [](Script& s)
     {
         s.success = 0;
         s.errorNumber = 12;
         LoseLastError(s);
     },
     "FMTWorkExec Error : 12",
     Joined({kWithWork,
             {kDescribeCall, "GetOptions", "FMTGetNbTrt", "SetOptions 21", kExecCall, "LastError"},
             kEnd})},
    {"NullLastErrorIsAnEmptyText",
     [](Script& s)
     {
         s.success = 0;
         s.lastErrorText = nullptr;
     },
     " n\xB0"
     "0 ",
     Joined({kWithWork,
             {kDescribeCall, "GetOptions", "FMTGetNbTrt", "SetOptions 21", kExecCall, "LastError"},
             kEnd})},
    {"LastErrorIsWindows1252",
     [](Script& s)
     {
         s.describe = E_FAIL;
         s.lastErrorText = L"\u20AC \u00E9 \u4E2D";
     },
     "\x80 \xE9 ?", Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})},
};

/// The text, or what begins with it where a star ends it: the system's last error follows, which
/// calls inside COM may change.
testing::Matcher<std::string> IsText(std::string text)
{
    if (text.empty() || text.back() != '*')
    {
        return text;
    }
    text.pop_back();
    return testing::StartsWith(text);
}

class BridgeFailure : public testing::TestWithParam<FailureCase>
{
};

TEST_P(BridgeFailure, IsTextedAndCleanedUp)
{
    Script script;
    GetParam().change(script);
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.errorText, IsText(GetParam().errorText));
    EXPECT_THAT(outcome.calls, ElementsAreArray(GetParam().calls));
}

INSTANTIATE_TEST_SUITE_P(Calls, BridgeFailure, testing::ValuesIn(kFailureCases),
                         [](const auto& test) { return std::string(test.param.name); });

// Calls that raise, with what is cleaned up after each.
struct RaisingCase
{
    const char* call;
    Calls cleanUp;
};

void PrintTo(const RaisingCase& raisingCase, std::ostream* stream)
{
    *stream << raisingCase.call;
}

const RaisingCase kRaisingCases[] = {
    {"CreateRun", {}},
    {"FMTConnect", {"ReleaseRun"}},
    {"CreateWork", {"Close 7", "ReleaseRun"}},
    {"FMTGetWorkDescr", kEnd},
    {"GetOptions", kEnd},
    {"FMTGetNbTrt", kEnd},
    {"SetOptions", kEnd},
    {"FMTWorkExec", kEnd},
};

class RaisingCall : public testing::TestWithParam<RaisingCase>
{
protected:
    // The calls after the one that raised.
    static Calls After(const Calls& calls, const std::string& name)
    {
        std::size_t at = 0;
        while (at < calls.size() && calls[at].compare(0, name.size(), name) != 0)
        {
            ++at;
        }
        EXPECT_LT(at, calls.size()) << name << " was not called";
        return Calls(calls.begin() + static_cast<std::ptrdiff_t>(at) + 1, calls.end());
    }
};

TEST_P(RaisingCall, UnknownExceptionIsTextedAndCleanedUp)
{
    Script script;
    script.faultyCalls = {GetParam().call};
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.errorText, "Unknown exception raised");
    EXPECT_THAT(After(outcome.calls, GetParam().call), ElementsAreArray(GetParam().cleanUp));
}

TEST_P(RaisingCall, DatabaseExceptionIsTextedAndDeleted)
{
    Script script;
    script.faultyCalls = {GetParam().call};
    script.fault = Fault::Database;
    const Outcome outcome = RunWith(script);
    tagODBCERROR error{};
    ODBC_PrepareStrucError(error, "ExecWorkFmt");
    const std::string formatted =
        ODBC_FormatStrucError(error, 0xA45001A, -1, "17", "driver text").SafeGetString();
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.errorText, "DataBase exception raised: " + formatted);
    EXPECT_THAT(After(outcome.calls, GetParam().call), ElementsAreArray(GetParam().cleanUp));
}

INSTANTIATE_TEST_SUITE_P(Calls, RaisingCall, testing::ValuesIn(kRaisingCases),
                         [](const auto& test) { return std::string(test.param.call); });

TEST(EngineBridge, RaisingLastErrorIsTextedAndCleanedUp)
{
    Script script;
    script.describe = E_FAIL;
    script.faultyCalls = {"LastError"};
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.errorText, "Unknown exception raised");
    EXPECT_THAT(outcome.calls,
                ElementsAreArray(Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})));
}

TEST(EngineBridge, EveryCleanUpStepIsTakenAlthoughEachRaises)
{
    Script script;
    script.describe = E_FAIL;
    script.faultyCalls = {"ReleaseWork", "Close", "ReleaseRun"};
    for (const Fault fault : {Fault::Unknown, Fault::Database})
    {
        script.fault = fault;
        const Outcome outcome = RunWith(script);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.errorText, "engine text") << "the text of the failure stays";
        EXPECT_THAT(outcome.calls,
                    ElementsAreArray(Joined({kWithWork, {kDescribeCall, "LastError"}, kEnd})));
    }
}

TEST(EngineBridge, RaisingCleanUpIsTextedWhenNothingWasBefore)
{
    Script script;
    script.describe = E_FAIL;
    script.lastErrorText = L"";
    for (const Fault fault : {Fault::Unknown, Fault::Database})
    {
        script.fault = fault;
        for (const char* const step : {"ReleaseWork", "Close", "ReleaseRun"})
        {
            script.faultyCalls = {step};
            EXPECT_EQ(RunWith(script).errorText, "Unknown exception raised at the end") << step;
        }
    }
}

TEST(EngineBridge, SuccessWithoutADescriptionIsAFailure)
{
    Script script;
    script.silentCalls = {"FMTGetWorkDescr"};
    EXPECT_EQ(RunWith(script).errorText, "engine text");
}

TEST(EngineBridge, SuccessWithoutAResultOfTheExecutionIsAFailure)
{
    Script script;
    script.silentCalls = {"FMTWorkExec"};
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.errorText, "engine text n\xB0"
                                 "0 ");
}

TEST(EngineBridge, LastErrorThatTellsNothingIsNumberZero)
{
    Script script;
    script.connect = E_FAIL;
    script.lastError = E_FAIL;
    script.silentCalls = {"LastError"};
    EXPECT_EQ(RunWith(script).errorText, "FMTConnect Error : 0");
}

TEST(EngineBridge, ExceptionThatCannotBeTextedLeavesNoConnectionOpen)
{
    std::optional<testing_support::FailNextAllocation> fault;
    Script script;
    script.onExecute = [&](const std::wstring&)
    {
        fault.emplace();
        throw 1;
    };
    const ComApartment apartment;
    const ScriptedEngine engine(script);
    EXPECT_THROW(amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, nullptr),
                 std::bad_alloc);
    fault.reset();
    ASSERT_GE(engine.Calls().size(), 4U);
    EXPECT_THAT(Calls(engine.Calls().end() - 4, engine.Calls().end()),
                ElementsAreArray(Joined({{kExecCall}, kEnd})));
}

TEST(EngineBridge, RaisingCleanUpLeavesSuccessAsItIs)
{
    Script script;
    script.faultyCalls = {"ReleaseWork", "Close", "ReleaseRun"};
    const Outcome outcome = RunWith(script);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.errorText, "before");
}

TEST(EngineBridge, EveryCleanUpStepIsTakenAlthoughEachRaisesAndMemoryHasRunOut)
{
    std::optional<testing_support::FailAllAllocations> fault;
    Script script;
    script.lastErrorText = L"";
    script.onExecute = [&](const std::wstring&) { fault.emplace(); };
    const ComApartment apartment;
    const ScriptedEngine engine(script);
    // Without memory the scripted engine raises from every call, those of the end included.
    const int result =
        amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, nullptr);
    const bool ranOut = fault->WasUsed();
    fault.reset();
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(ranOut);
    EXPECT_EQ(engine.Calls().back(), kExecCall);
}

TEST(EngineBridge, ErrorTextIsCutAt255Characters)
{
    const std::wstring longText(300, L'x');
    Script script;
    script.describe = E_FAIL;
    script.lastErrorText = longText.c_str();
    EXPECT_EQ(RunWith(script).errorText, std::string(255, 'x'));
}

TEST(EngineBridge, ErrorTextMayBeNull)
{
    const ComApartment apartment;
    Script script;
    script.describe = E_FAIL;
    const ScriptedEngine engine(script);
    EXPECT_EQ(amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, nullptr), 0);
    EXPECT_THAT(engine.Calls(), testing::Contains("LastError"));
}

TEST(EngineBridge, ThreadWithoutComHasNoRunObject)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, errorText), 0);
    EXPECT_THAT(errorText, testing::StartsWith("Initialize CFFmtRun Error : "));
}

TEST(ComText, WithoutMemoryRaisesOutOfMemory)
{
    // Longer than any BSTR; its characters are never looked at.
    const std::wstring_view endless(L"", std::size_t{1} << 31U);
    try
    {
        const amounts::ComText text(endless);
        FAIL() << "no exception";
    }
    catch (const amounts::ComFailure& failure)
    {
        EXPECT_EQ(failure.result, E_OUTOFMEMORY);
    }
}

} // namespace
