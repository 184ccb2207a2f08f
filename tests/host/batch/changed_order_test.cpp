// Orders whose file does not stay as it is while they are judged.

#include "host/order_lock.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <thread>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class ChangedOrder : public BatchTest
{
protected:
    /// Judges the folder and, while the order is judged, does something to it: the database takes
    /// no history row before that is done.
    Answer BatchWhile(const std::function<bool()>& isDone)
    {
        m_database.Execute(L"BEGIN IMMEDIATE");
        auto answer = std::async(std::launch::async, [this] { return Batch({"--json"}); });
        const std::string lock = host::OrderLockPath(m_orders.Path("A001.xml"));
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!(fs::exists(lock) && isDone()) && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        m_database.Execute(L"COMMIT");
        return answer.get();
    }
};

TEST_F(ChangedOrder, ThatWentAwayIsToldAsNotJudged)
{
    Order("A001.xml");
    std::error_code failed; // Windows removes no file that is being read

    const Answer answer = BatchWhile([&] { return fs::remove(m_orders.Path("A001.xml"), failed); });

    EXPECT_EQ(answer.status, 3);
    const auto lines = Lines(answer);
    EXPECT_THAT(lines.at("A001.xml")["error"].get<std::string>(),
                AllOf(HasSubstr("it went away while it was judged. Its history row"),
                      Not(HasSubstr("Put it back"))));
    EXPECT_EQ(lines.at("A001.xml")["outcome"], "not-run");
    const auto& summary = lines.at("")["summary"];
    EXPECT_EQ(summary["accepted"], 0);
    EXPECT_EQ(summary["amountsUnknown"], 0);
    EXPECT_EQ(summary["notJudged"], 1);
}

TEST_F(ChangedOrder, ThatBecameAnotherOneIsNotJudgedAndTheOtherOneIs)
{
    Order("A001.xml");
    std::string other = ReadWholeFile(m_orders.Path("A001.xml")) + "\n";
    const std::string fresh = m_folder.Write("fresh.xml", other);
    std::error_code failed;

    const Answer answer = BatchWhile(
        [&]
        {
            fs::rename(fresh, m_orders.Path("A001.xml"), failed);
            return !failed;
        });

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(Lines(answer).at("A001.xml")["error"].get<std::string>(),
                HasSubstr("it was changed or replaced while it was judged."));
    EXPECT_EQ(Lines(Batch({"--json"})).at("A001.xml")["outcome"], "success");
    EXPECT_EQ(Batch().status, 0);
}

TEST_F(ChangedOrder, OfAListThatIsNotThereIsToBePutBackOrLeftOut)
{
    const std::string list = m_orders.Write("orders.csv", "file\nA001.xml\n");

    const Answer answer = BatchOf(list, {"--json"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(Lines(answer).at("A001.xml")["error"].get<std::string>(),
                HasSubstr("Put it back, or leave it out of the list."));
}

} // namespace
} // namespace testing_support
