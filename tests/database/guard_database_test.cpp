#include "database/guard_database.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

// That each exception is deleted exactly once is judged by AddressSanitizer in these tests.

namespace
{

[[noreturn]] void Raise()
{
    throw new CDBException(-1, "42000", 7, "first text", "second text");
}

struct Course
{
    bool ended = false;
    std::string database;
    int others = 0;
};

template <typename Body>
Course Follow(Body&& body)
{
    Course course;
    course.ended = database::GuardDatabase(
        body, [&](const CDBException& raised) { course.database += raised.GetText(); },
        [&] { ++course.others; });
    return course;
}

TEST(GuardDatabase, LeavesANormalEndAlone)
{
    const Course course = Follow([] {});
    EXPECT_TRUE(course.ended);
    EXPECT_EQ(course.database, "");
    EXPECT_EQ(course.others, 0);
}

TEST(GuardDatabase, ShowsADatabaseExceptionAndDeletesIt)
{
    const Course course = Follow(Raise);
    EXPECT_FALSE(course.ended);
    EXPECT_EQ(course.database, "first text");
    EXPECT_EQ(course.others, 0);
}

TEST(GuardDatabase, KeepsOtherExceptionsApart)
{
    const Course course = Follow([] { throw std::runtime_error("other"); });
    EXPECT_FALSE(course.ended);
    EXPECT_EQ(course.database, "");
    EXPECT_EQ(course.others, 1);
}

TEST(GuardDatabase, DeletesTheExceptionWhenItsHandlerRaises)
{
    EXPECT_THROW(
        database::GuardDatabase(
            Raise, [](const CDBException&) { throw std::runtime_error("handler"); }, [] {}),
        std::runtime_error);
}

TEST(GuardDatabase, NestedGuardsShowAnExceptionOnce)
{
    int inner = 0;
    int outer = 0;
    database::GuardDatabase(
        [&]
        {
            database::GuardDatabase(
                Raise, [&](const CDBException&) { ++inner; }, [] {});
        },
        [&](const CDBException&) { ++outer; }, [] {});
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(outer, 0);
}

TEST(DatabaseException, KeepsItsParts)
{
    auto* const raised = new CDBException(100, "HYT00", -5, "one", "two");
    const database::ExceptionOwner owner(raised);
    EXPECT_EQ(raised->GetReturnCode(), 100);
    EXPECT_STREQ(raised->GetState(), "HYT00");
    EXPECT_EQ(raised->GetNativeError(), -5);
    EXPECT_STREQ(raised->GetFirstText().SafeGetString(), "one");
    EXPECT_STREQ(raised->GetSecondText().SafeGetString(), "two");
    EXPECT_STREQ(raised->GetText(), "one");
}

TEST(DatabaseException, ShowsTheSecondTextWhereTheFirstIsEmpty)
{
    auto* const raised = new CDBException(-1, "HY000", 0, "", "two");
    const database::ExceptionOwner owner(raised);
    EXPECT_STREQ(raised->GetText(), "two");
}

TEST(DatabaseException, TakesNullTextsAndCutsALongState)
{
    auto* const raised = new CDBException(-1, "TOOLONG", 0, nullptr, nullptr);
    const database::ExceptionOwner owner(raised);
    EXPECT_STREQ(raised->GetState(), "TOOLO");
    EXPECT_STREQ(raised->GetText(), "");
}

} // namespace
