#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

// A program that runs no test has shown nothing, so it fails; one that holds none fails when it is
// asked what it holds, for it would never be run.
int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    const int result = RUN_ALL_TESTS();
    const auto& all = *testing::UnitTest::GetInstance();
    if (all.total_test_count() == 0)
    {
        std::fprintf(stderr, "This program holds no test.\n");
        return 1;
    }
    if (!testing::GTEST_FLAG(list_tests) && all.test_to_run_count() == 0)
    {
        std::fprintf(stderr, "No test was run: the filter names none.\n");
        return 1;
    }
    return result;
}
