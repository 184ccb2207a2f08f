#include "host/batch/teller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>

namespace batch
{
namespace
{

TEST(Summary, CountsTheTimeFromTheStartOfTheRun)
{
    Teller teller(host::OutputFormat::NdJson, 0,
                  std::chrono::steady_clock::now() - std::chrono::hours(1));

    testing::internal::CaptureStdout();
    teller.Sum();
    const auto told = nlohmann::json::parse(testing::internal::GetCapturedStdout());

    EXPECT_GE(told["summary"]["seconds"].get<double>(), 3600.0);
}

} // namespace
} // namespace batch
