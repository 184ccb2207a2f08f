#include "signutils/c_call.h"
#include "signutils/c_results.h"
#include "tests/signutils/c_handles.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

// A record that has grown by one field since its first version.
struct Grown
{
    std::uint32_t size;
    std::uint32_t first;
    std::uint32_t added;
};

constexpr Grown kNothing = {sizeof(Grown), 1, 2};
constexpr Grown kSomething = {sizeof(Grown), 3, 4};
constexpr std::uint32_t kUntouched = 0x7F7F7F7F;

} // namespace

template <>
inline constexpr std::uint32_t signutils::kFirstSize<Grown> = 8;

namespace
{

TEST(CRecords, HostThatWasBuiltBeforeAFieldWasAddedGetsTheOthers)
{
    Grown record = {8, kUntouched, kUntouched};
    const signutils::RecordResult<Grown> result("record", &record, kNothing);
    EXPECT_EQ(record.first, 1U);
    EXPECT_NO_THROW(result.Require());
    result.Fill(kSomething);
    EXPECT_EQ(record.size, 8U);
    EXPECT_EQ(record.first, 3U);
    EXPECT_EQ(record.added, kUntouched); // behind the host's record lies the host's own memory
}

TEST(CRecords, HostThatKnowsMoreFieldsThanTheLibraryReadsThemAsZero)
{
    std::vector<std::uint32_t> record(6, kUntouched);
    record[0] = 5 * sizeof(std::uint32_t);
    const signutils::RecordResult<Grown> result("record", reinterpret_cast<Grown*>(record.data()),
                                                kNothing);
    EXPECT_NO_THROW(result.Require());
    result.Fill(kSomething);
    EXPECT_EQ(record, (std::vector<std::uint32_t>{sizeof(Grown), 3, 4, 0, 0, kUntouched}));
}

TEST(CRecords, SizeThatNobodyHasSetIsRefusedAndNothingWritten)
{
    for (const std::uint32_t size : {0U, 7U, 4097U, kUntouched, UINT32_MAX})
    {
        Grown record = {size, kUntouched, kUntouched};
        const signutils::RecordResult<Grown> result("record", &record, kNothing);
        EXPECT_EQ(record.first, kUntouched);
        try
        {
            result.Require();
            ADD_FAILURE() << "size " << size << " was accepted";
        }
        catch (const signutils::CallRefused& refused)
        {
            EXPECT_EQ(refused.status, SIGNUTILS_BAD_ARGUMENT);
            EXPECT_EQ(refused.text, "record: its size is " + std::to_string(size) +
                                        ". Set it to the size of the record before each call.");
        }
    }
}

TEST(CRecords, EveryRecordWithoutASizeIsRefused)
{
    const CSession session;
    const CSigners signers;
    SignUtilsCheck check = {};
    SignUtilsHolder holder = {};
    SignUtilsAmounts amounts = {};
    SignUtilsHandOff handOff = {};
    EXPECT_EQ(SignUtilsGetLastCheck(session, &check), SIGNUTILS_BAD_ARGUMENT);
    EXPECT_THAT(session.Error(), HasSubstr("check: its size is 0."));
    EXPECT_EQ(check.problem, nullptr);
    EXPECT_EQ(SignUtilsGetSignerInfos(session, "H1", signers, &holder), SIGNUTILS_BAD_ARGUMENT);
    EXPECT_EQ(SignUtilsGetMaxAmountFile(session, "f", &amounts), SIGNUTILS_BAD_ARGUMENT);
    EXPECT_EQ(SignUtilsAddPaymentStatusReport(session, "", "psr", "S", "P", "", &handOff),
              SIGNUTILS_BAD_ARGUMENT);
}

TEST(CErrors, LongTextIsCutAtAWholeCharacter)
{
    signutils::CallError error = {};
    std::string text(1022, 'x');
    error.Set(text + "é"); // its second byte would be the 1024th
    EXPECT_EQ(error.text, text);
    text += "y";
    error.Set(text);
    EXPECT_EQ(error.text, text);
    error.Set(text + "z");
    EXPECT_EQ(error.text, text);
}

TEST(CErrors, LongTextThatHoldsNoWholeCharacterIsDropped)
{
    signutils::CallError error = {"before"};
    error.Set(std::string(2000, '\x80')); // bytes that only continue a character
    EXPECT_STREQ(error.text, "");
}

TEST(CErrors, ExceptionsAreSortedAndNoneLeaves)
{
    signutils::CallError error = {};
    EXPECT_EQ(signutils::RunCall(error, [] { throw std::bad_alloc(); }), SIGNUTILS_OUT_OF_MEMORY);
    EXPECT_THAT(error.text, HasSubstr("not enough memory"));
    EXPECT_EQ(signutils::RunCall(error, [] { throw std::runtime_error("broken"); }),
              SIGNUTILS_UNEXPECTED);
    EXPECT_STREQ(error.text, "broken");
    EXPECT_EQ(signutils::RunCall(error, [] { throw 5; }), SIGNUTILS_UNEXPECTED);
    EXPECT_STREQ(error.text, "An exception without a text ended the call.");
    EXPECT_EQ(signutils::RunCall(error, [] {}), SIGNUTILS_OK);
    EXPECT_STREQ(error.text, "");
}

} // namespace
