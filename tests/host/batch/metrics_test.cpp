// signcheck batch --metrics: what it writes for a monitoring server.

#include "tests/host/batch/batch_world.h"
#include "tests/testing/exposition_reader.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

namespace fs = std::filesystem;

constexpr const char* kChecks = "signutils_checks_total";

class BatchMetrics : public BatchTest
{
protected:
    ExpositionReader Written() const { return ExpositionReader(ReadWholeFile(m_file)); }

    std::string m_file = m_folder.Path("orders.prom");
};

TEST_F(BatchMetrics, TellTheChecksOfTheRun)
{
    Order("A001.xml");
    Order("A002.xml");

    const Answer answer = Batch({"--metrics", m_file, "--jobs", "2"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    const ExpositionReader read = Written();
    EXPECT_EQ(read.Sum(kChecks, {{"verdict", "success"}, {"source", "orders"}}), 2.0);
    EXPECT_EQ(read.Sum(kChecks), 2.0);
    EXPECT_EQ(read.Sum("signutils_check_seconds_count"), 2.0);
    EXPECT_EQ(read.Sum("signutils_conversion_seconds_count"), 2.0);
    EXPECT_GT(read.Sum("signutils_statement_seconds_count"), 2.0);
    EXPECT_EQ(read.Sum("signutils_spool_events"), 0.0);
}

TEST_F(BatchMetrics, TellWhatWaitsInTheSpool)
{
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", m_folder.Path("waiting").c_str());
    fs::create_directory(m_folder.Path("waiting"));
    m_folder.Write("waiting/events-of-another-database.jsonl", "{}\n{}\n");
    Order("A001.xml");

    Batch({"--metrics", m_file});

    EXPECT_EQ(Written().Sum("signutils_spool_events"), 2.0);
}

TEST_F(BatchMetrics, AreThereWhenTheDatabaseCannotBeUsed)
{
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    Order("A001.xml");

    const Answer answer = Batch({"--metrics", m_file});

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(Written().Count("signutils_build_info"), 1U);
    EXPECT_EQ(Written().Sum(kChecks), 0.0);
}

TEST_F(BatchMetrics, FileThatCannotBeWrittenIsOneWarningAndChangesNothing)
{
    Order("A001.xml");

    const Answer answer = Batch({"--metrics", m_folder.Path("away/orders.prom")});

    EXPECT_EQ(answer.status, 0);
    const std::string warning = "the measures cannot be written to ";
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr(warning), HasSubstr("orders.prom"), HasSubstr("path not found")));
    EXPECT_EQ(answer.errors.find(warning, answer.errors.find(warning) + 1), std::string::npos);
    EXPECT_THAT(Rows(), testing::ElementsAre(testing::Pair("A001.xml", 1)));
}

TEST_F(BatchMetrics, EmptyNameIsRefused)
{
    Order("A001.xml");

    const Answer answer = Batch({"--metrics", ""});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --metrics is empty. Name the file"));
    EXPECT_THAT(Rows(), testing::IsEmpty());
}

TEST_F(BatchMetrics, AreNotWrittenUnlessTheyAreAskedFor)
{
    Order("A001.xml");

    Batch();

    EXPECT_FALSE(fs::exists(m_file));
}

} // namespace
} // namespace testing_support
