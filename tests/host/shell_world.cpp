#include "tests/host/shell_world.h"

#include "tests/testing/platform.h"

#include <cstdlib>
#include <filesystem>

namespace testing_support
{

namespace
{

namespace fs = std::filesystem;

const std::string kExampleOrders = std::string(SIGNUTILS_SOURCES) + "/examples/orders/";

std::string PathWithSigncheck()
{
    return fs::path(SIGNCHECK_PROGRAM).parent_path().string() + ":" + std::getenv("PATH");
}

Answer RunShell(const std::string& line)
{
    const TemporaryFolder folder;
    Answer answer;
    answer.status = RunProgram("sh", {"-c", line}, folder.Path("output"), folder.Path("errors"));
    answer.output = ReadWholeFile(folder.Path("output"));
    answer.errors = ReadWholeFile(folder.Path("errors"));
    return answer;
}

// A copy has a bank, a spool and a hand-off store of its own.
std::string Settled(const std::string& folder)
{
    return "cd '" + folder +
           "' || exit 99\nexport SIGNCHECK_DB='Driver=SQLite3;Database=bank.db' "
           "SIGNUTILS_SPOOL=spool SIGNUTILS_HANDOFF=handoff\n";
}

constexpr const char* kSetUp =
    "set -e\n"
    "signcheck init --sample\n"
    "terms='--partner DUPONTSA --service CCT --client TRESOR --protocol 9 --type 1'\n"
    "signcheck rules export >rules.toml\n"
    "signcheck check order.xml $terms --signers 'Élodie Lefèvre' --format auto --trace check.trace "
    "--order-id A1\n"
    "signcheck check refused.xml $terms --signers 'Élodie Lefèvre' --format auto --request "
    "REQ-0042 "
    "--psr-service STATUS --party QZBKFRPP --order-id A2 --message-name pain.001.001.03 "
    "--message-id RPT-1 || test $? -eq 1\n";

} // namespace

ShellWorldTest::ShellWorldTest()
    : m_world(m_folder.Path("world")), m_path("PATH", PathWithSigncheck().c_str())
{
    fs::create_directories(m_world + "/orders");
    fs::copy_file(kExampleOrders + "01-dupont-suppliers.xml", m_world + "/order.xml");
    fs::copy_file(kExampleOrders + "01-dupont-suppliers.xml", m_world + "/orders/order.xml");
    m_folder.Write("world/orders/order.xml.terms", "{\"signers\": \"Élodie Lefèvre\"}");
    fs::copy_file(kExampleOrders + "03-dupont-workshop.xml", m_world + "/refused.xml");
    m_folder.Write("world/people.csv", "huid,partner,first-name,last-name,opposition,certificate,"
                                       "serial,expires\nFR-0099,DUPONTSA,Ana,Ruiz,0,Ana Ruiz,,\n");
    const Answer answer = RunShell(Settled(m_world) + kSetUp);
    EXPECT_EQ(answer.status, 0) << answer.output << answer.errors;
}

Answer ShellWorldTest::RunInCopy(const std::string& line) const
{
    const TemporaryFolder copies;
    const std::string copy = copies.Path("copy");
    fs::copy(m_world, copy, fs::copy_options::recursive);
    return RunShell(Settled(copy) + line);
}

Answer ShellWorldTest::RunUntil(const std::string& word, const std::string& line) const
{
    return RunInCopy(line + " >printed & watcher=$!\n" + "for try in $(seq 600); do\n" +
                     "grep -q '" + word + "' printed && break; sleep 0.1; done\n" +
                     "kill -TERM $watcher; wait $watcher; status=$?; cat printed\n" + "grep -q '" +
                     word + "' printed && exit $status; exit 98");
}

} // namespace testing_support
