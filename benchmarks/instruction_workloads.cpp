// Fixed workloads, each done as often as it is told: scripts/instructions counts their instructions
// under valgrind, which differ from run to run by next to nothing.
//
// Usage: signutils_instruction_workloads WORKLOAD TIMES
//        signutils_instruction_workloads --list

#include "amounts/tdelimitedfile.h"
#include "amounts/work_files.h"
#include "benchmarks/null_driver/null_driver.h"
#include "benchmarks/order_files.h"
#include "benchmarks/sample_check.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "signutils/amount_units.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr std::uint64_t kOrders = 200;
constexpr const char* kAmountTexts[] = {"0.01", "12.50", "1234567.89", "45000.00", "99999999.99"};

// Nothing that a workload finds may be left out of it.
std::uint64_t g_found = 0;

/// Where the workloads have their files: an order file with its work files, the spool.
class Files
{
public:
    Files()
        : m_folder("instruction-workloads", 4U * kOrders * benchmarks::kBytesPerOrder),
          m_order(m_folder.Path("order.xml"))
    {
        benchmarks::WritePain001(m_order, kOrders);
        Convert();
        setenv("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str(), 1);
    }

    const std::string& Order() const { return m_order; }
    std::string Rows() const { return m_order + ".veu.cp"; }

    void Convert() const
    {
        const std::string stem = m_order + ".veu";
        amounts::DeleteWorkFiles(m_order.c_str());
        engine::Convert(engine::Work::Pain001, m_order, stem);
    }

private:
    benchmarks::DataFolder m_folder;
    std::string m_order;
};

void ReadRows(const std::string& path)
{
    TDelimitedFile file(path.c_str(), 0);
    for (bool more = file.HasRow(); more; more = file.NextRow())
    {
        g_found += file.CurrentRow().GetAt(1).size() + file.CurrentRow().GetAt(5).size();
    }
}

void ReadAmounts()
{
    for (const char* const text : kAmountTexts)
    {
        std::uint16_t decimals = kUnknownDecimals;
        g_found += static_cast<std::uint64_t>(AmountTextToUnits(text, decimals));
    }
}

void WriteAmounts()
{
    std::array<char, kAmountTextSize> text{};
    for (std::int64_t units = 1; units < 1'000'000'000'000'000; units *= 999)
    {
        g_found += UnitsToAmountText(units, text).size();
    }
}

void Check(const null_driver::NullDriver& driver, std::size_t rules)
{
    if (benchmarks::SampleCheck(driver.ConnexionString(rules)) != 1)
    {
        throw std::runtime_error("the check is not accepted");
    }
}

struct Workload
{
    std::string_view name;
    std::function<void()> once;
};

int Run(std::string_view name, std::uint64_t times)
{
    const Files files;
    const null_driver::NullDriver driver;
    const Workload workloads[] = {
        {"check-2-rules", [&] { Check(driver, 2); }},
        {"check-20-rules", [&] { Check(driver, 20); }},
        {"rows-200", [&] { ReadRows(files.Rows()); }},
        {"conversion-200", [&] { files.Convert(); }},
        {"amounts-read", ReadAmounts},
        {"amounts-written", WriteAmounts},
    };
    for (const Workload& each : workloads)
    {
        if (name == "--list")
        {
            std::printf("%.*s\n", static_cast<int>(each.name.size()), each.name.data());
        }
        else if (name == each.name)
        {
            for (std::uint64_t i = 0; i < times; ++i)
            {
                each.once();
            }
            std::printf("found %llu\n", static_cast<unsigned long long>(g_found));
            return 0;
        }
    }
    return name == "--list" ? 0 : 64;
}

} // namespace

int main(int argc, char** argv)
{
    try
    {
        return Run(argc > 1 ? argv[1] : "", argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
    }
    catch (const std::exception& raised)
    {
        std::fprintf(stderr, "signutils_instruction_workloads: %s\n", raised.what());
        return 1;
    }
}
