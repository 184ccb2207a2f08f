// What somebody who may drop orders puts beside them: links, pipes and files under the names that a
// run uses. docs/security.md tells the same in words.

#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <sys/stat.h>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* kVictim = "what somebody needs\n";

class PosixHostileDropFolder : public BatchTest
{
protected:
    /// A file outside the drop folder that must stay as it is.
    std::string Victim() const { return m_elsewhere.Write("victim", kVictim); }

    void ExpectNothingElsewhere(const std::vector<std::string>& names) const
    {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(m_elsewhere.Path()))
        {
            found.push_back(entry.path().filename().string());
        }
        EXPECT_THAT(found, testing::UnorderedElementsAreArray(names));
    }

    TemporaryFolder m_elsewhere;
};

TEST_F(PosixHostileDropFolder, ALinkInThePlaceOfALockIsNotFollowedAndItsOrderNotJudged)
{
    Order("A001.xml");
    Order("A002.xml");
    Order("A003.xml");
    fs::create_symlink(Victim(), m_orders.Path("A001.xml.veu.lock"));
    fs::create_symlink(m_elsewhere.Path("made"), m_orders.Path("A002.xml.veu.lock"));

    const auto lines = Lines(Batch({"--json"}));

    for (const char* const name : {"A001.xml", "A002.xml"})
    {
        EXPECT_THAT(lines.at(name)["error"].get<std::string>(),
                    HasSubstr("cannot be made, so that nothing keeps another host"));
    }
    EXPECT_THAT(Rows(), ElementsAre(Pair("A003.xml", 1)));
    EXPECT_EQ(ReadWholeFile(m_elsewhere.Path("victim")), kVictim);
    ExpectNothingElsewhere({"victim"});
}

TEST_F(PosixHostileDropFolder, LinksInThePlaceOfWorkFilesOverwriteNothing)
{
    for (const char* const ending : {"", ".bp", ".cp", ".cp2", ".tot", ".err"})
    {
        const std::string name = std::string("A") + ending + ".xml";
        Order(name);
        fs::create_symlink(Victim(), m_orders.Path(name + ".veu" + ending));
        Order("B" + name);
        fs::create_symlink(m_elsewhere.Path("made"), m_orders.Path("B" + name + ".veu" + ending));
    }

    Batch();

    EXPECT_EQ(ReadWholeFile(m_elsewhere.Path("victim")), kVictim);
    ExpectNothingElsewhere({"victim"});
}

TEST_F(PosixHostileDropFolder, LeftoversThatAreLinksGoThemselves)
{
    Order("A001.xml");
    const std::string victim = Victim();
    fs::last_write_time(victim, fs::last_write_time(victim) - std::chrono::hours(1));
    fs::create_symlink(victim, m_orders.Path("A009.xml.veu.cp"));

    Batch({"--remove-leftovers", "60s"});

    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml"));
    EXPECT_EQ(ReadWholeFile(victim), kVictim);
}

TEST_F(PosixHostileDropFolder, AnOrderThatIsALinkIsOnlyReadWhereItLeads)
{
    Order("A001.xml");
    fs::rename(m_orders.Path("A001.xml"), m_elsewhere.Path("order.xml"));
    fs::create_symlink(m_elsewhere.Path("order.xml"), m_orders.Path("A001.xml"));
    const std::string before = ReadWholeFile(m_elsewhere.Path("order.xml"));

    EXPECT_EQ(Batch().status, 0);

    EXPECT_EQ(ReadWholeFile(m_elsewhere.Path("order.xml")), before);
    ExpectNothingElsewhere({"order.xml"});
}

TEST_F(PosixHostileDropFolder, PipesAndDevicesAreNoOrdersAndNoTerms)
{
    Order("A001.xml");
    ASSERT_EQ(mkfifo(m_orders.Path("A001.xml.terms").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(m_orders.Path("A002.xml").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", m_orders.Path("A003.xml"));

    const auto lines = Lines(Batch({"--sidecar", "--json"}));

    EXPECT_EQ(lines.size(), 2U); // A001.xml and the summary
    EXPECT_THAT(lines.at("A001.xml")["error"].get<std::string>(), HasSubstr("is no regular file"));
    EXPECT_THAT(Rows(), IsEmpty());
}

} // namespace
} // namespace testing_support
