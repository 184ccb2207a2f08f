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

// What lies there stays, and no order is judged.
TEST_F(BatchMetrics, FileThatHoldsSomethingElseIsRefused)
{
    const std::string order = Order("A001.xml");
    const std::string bytes = ReadWholeFile(order);
    m_folder.Write("letter.txt", "Dear customer");
    for (const std::string& path : {m_folder.Path("letter.txt"), m_folder.Path()})
    {
        const Answer answer = Batch({"--metrics", path});

        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --metrics: the measures cannot take"),
                                         HasSubstr(" lies there"), HasSubstr("Name a new file")));
    }
    EXPECT_EQ(ReadWholeFile(m_folder.Path("letter.txt")), "Dear customer");
    EXPECT_EQ(ReadWholeFile(order), bytes);
    EXPECT_THAT(Rows(), testing::IsEmpty());
}

TEST_F(BatchMetrics, FileInTheFolderOfTheOrdersIsRefused)
{
    Order("A001.xml");
    fs::create_directory(m_orders.Path("done"));
    for (const char* const name : {"orders.prom", "done/orders.prom"})
    {
        const Answer answer = Batch({"--metrics", m_orders.Path(name)});

        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors, HasSubstr("lies in the folder whose orders are judged"));
        EXPECT_FALSE(fs::exists(m_orders.Path(name)));
    }
    EXPECT_THAT(Rows(), testing::IsEmpty());
}

// Its name only begins as the other's.
TEST_F(BatchMetrics, FileBesideTheFolderOfTheOrdersIsWritten)
{
    Order("A001.xml");
    const fs::path beside = m_orders.Path() + "-measures";
    fs::create_directory(beside);

    EXPECT_EQ(Batch({"--metrics", (beside / "orders.prom").string()}).status, 0);

    EXPECT_TRUE(fs::exists(beside / "orders.prom"));
    fs::remove_all(beside);
}

TEST_F(BatchMetrics, AreNotWrittenUnlessTheyAreAskedFor)
{
    Order("A001.xml");

    Batch();

    EXPECT_FALSE(fs::exists(m_file));
}

} // namespace
} // namespace testing_support
