// How does the cost of a check grow with the rules of its contract, with its signers, and with the
// holders in the database? Rules and signers on the driver that answers at once, holders on SQLite,
// where the index of the look-up by holder serves. Processor time of one check of a new object; the
// sizes take turns, medians of five rounds.

#include "benchmarks/check_bank.h"
#include "benchmarks/null_driver/null_driver.h"
#include "benchmarks/sample_check.h"
#include "benchmarks/setting.h"
#include "database/idle_pool.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t kRounds = 5;

/// One size of what grows, and a check of it.
struct Size
{
    std::size_t size;
    std::size_t times; ///< checks a round
    std::function<unsigned long()> check;
    std::array<double, kRounds> seconds{};
};

double ProcessorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void TimeRound(Size& size, std::size_t round)
{
    const double start = ProcessorSeconds();
    for (std::size_t i = 0; i < size.times; ++i)
    {
        if (size.check() != 1)
        {
            throw std::runtime_error("a check of the sizes is not accepted");
        }
    }
    size.seconds[round] = (ProcessorSeconds() - start) / static_cast<double>(size.times);
}

void Print(const char* what, std::vector<Size> sizes)
{
    for (const Size& each : sizes)
    {
        each.check(); // opens the connections
    }
    for (std::size_t round = 0; round < kRounds; ++round)
    {
        for (Size& each : sizes)
        {
            TimeRound(each, round);
        }
    }
    std::printf("\n%s\n", what);
    for (Size& each : sizes)
    {
        std::sort(each.seconds.begin(), each.seconds.end());
        std::printf("  %8zu  %12.2f us a check\n", each.size, each.seconds[kRounds / 2] * 1e6);
    }
}

void PrintRules(const null_driver::NullDriver& driver)
{
    std::vector<Size> sizes;
    for (const std::size_t rules : {2U, 20U, 200U, 2000U})
    {
        const std::string connexionString = driver.ConnexionString(rules);
        sizes.push_back({rules, std::max<std::size_t>(4000 / rules, 4),
                         [connexionString] { return benchmarks::SampleCheck(connexionString); }});
    }
    Print("rules of the contract, two signers", std::move(sizes));
}

std::wstring SignerList(std::size_t count)
{
    std::wstring list = L"First Signer;Second Signer";
    for (std::size_t i = 2; i < count; ++i)
    {
        list += L";Signer Number " + std::to_wstring(i);
    }
    return list;
}

void PrintSigners(const null_driver::NullDriver& driver)
{
    std::vector<Size> sizes;
    const std::string connexionString = driver.ConnexionString(2);
    for (const std::size_t signers : {2U, 5U, 10U, 20U, 50U})
    {
        sizes.push_back({signers, 500, [connexionString, list = SignerList(signers)] {
                             return benchmarks::SampleCheck(connexionString, list.c_str());
                         }});
    }
    Print("signers, two rules", std::move(sizes));
}

void PrintHolders(const benchmarks::DataFolder& folder)
{
    std::vector<Size> sizes;
    for (const std::size_t holders : {10U, 1'000U, 100'000U, 1'000'000U})
    {
        const std::string connexionString = "Driver=SQLite3;SyncPragma=OFF;Database=" +
                                            folder.Path(std::to_string(holders) + ".db");
        benchmarks::MakeBank(connexionString, 2, holders);
        sizes.push_back(
            {holders, 40, [connexionString] { return benchmarks::SampleCheck(connexionString); }});
    }
    Print("holders in the database, SQLite, two rules", std::move(sizes));
    database::EmptyIdlePool();
}

int Run()
{
    benchmarks::PrintSetting("How does the cost of a check grow?");
    const benchmarks::DataFolder folder("scaling-bench", 512U * 1024 * 1024);
    setenv("SIGNUTILS_SPOOL", folder.Path("spool").c_str(), 1);
    const null_driver::NullDriver driver;
    PrintRules(driver);
    PrintSigners(driver);
    PrintHolders(folder);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
