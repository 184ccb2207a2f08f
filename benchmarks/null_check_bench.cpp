// What does a whole check add to its statements? On a driver that answers at once, beside bare ODBC
// calls that run exactly the same statements on connections that stay open. Each check is one of a
// new object, as hosts make one for each order file; its connections come from the idle pool, which
// tests each for life by a statement of its own, three a check. A second floor runs those too.

#include "benchmarks/null_driver/null_driver.h"
#include "benchmarks/raw_checks.h"
#include "benchmarks/rounds.h"
#include "benchmarks/sample_check.h"
#include "benchmarks/setting.h"

#include <cstdlib>
#include <stdexcept>

namespace
{

constexpr char16_t kProbe[] = u"SELECT 1";

/// Runs something so many times; the sum of what it tells.
template <typename Work>
std::uint64_t Times(std::uint64_t count, const Work& work)
{
    std::uint64_t sum = 0;
    for (std::uint64_t i = 0; i < count; ++i)
    {
        sum += work();
    }
    return sum;
}

void Compare(const null_driver::NullDriver& driver, std::size_t rules)
{
    const std::string connexionString = driver.ConnexionString(rules);
    const auto check = [&] { return benchmarks::SampleCheck(connexionString); };
    if (check() != 1)
    {
        throw std::runtime_error("the check is not accepted");
    }
    const std::vector<std::u16string> withProbes = driver.StatementsOf(check);
    std::vector<std::u16string> statements = withProbes;
    std::erase(statements, kProbe);
    benchmarks::RawChecks raw(connexionString, statements);
    benchmarks::RawChecks probing(connexionString, withProbes);
    // The rule lines, and one holder for each of a rule's two.
    if (raw.RunOnce() != 3 * rules || withProbes.size() != statements.size() + 3)
    {
        throw std::runtime_error("the bare calls do not find what the check finds");
    }
    const std::uint64_t checks = 20000 / statements.size();
    std::printf("\n%zu rules: %zu statements a check, %llu checks a round\n", rules,
                statements.size(), static_cast<unsigned long long>(checks));
    benchmarks::TimeEachInTurn({{"bare calls, the check's statements",
                                 [&] { return Times(checks, [&] { return raw.RunOnce(); }); }},
                                {"bare calls, the pool's probes too",
                                 [&] { return Times(checks, [&] { return probing.RunOnce(); }); }},
                                {"whole check", [&] { return Times(checks, check); }}},
                               checks);
}

int Run()
{
    benchmarks::PrintSetting("What does a whole check add to its statements?");
    const benchmarks::DataFolder folder("null_check_bench_data", 1024 * 1024);
    setenv("SIGNUTILS_SPOOL", folder.Path("spool").c_str(), 1);
    const null_driver::NullDriver driver;
    Compare(driver, 2);
    Compare(driver, 20);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
