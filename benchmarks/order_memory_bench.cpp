// Does memory depend on the order file? Conversion and analysis of pain.001 files of three sizes
// each run in a process of their own; the figure is the process's peak over what it held before.
// The run fails when a peak is not under 32 MiB or grows with the file.

#include "amounts/format_conversion.h"
#include "benchmarks/order_files.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "port/com.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using benchmarks::OrderFileFacts;

constexpr std::uint64_t kSizes[] = {10'000, 100'000, 1'000'000};
constexpr double kMostMiB = 32.0;
// Between the smallest and the largest file: what the allocator's own chance may add.
constexpr double kMostGrowthMiB = 1.0;

// A line of the kernel's report on this process, in KiB.
long StatusKiB(std::string_view label)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.starts_with(label))
        {
            return std::stol(line.substr(label.size()));
        }
    }
    throw std::runtime_error("the kernel does not tell " + std::string(label));
}

void Convert(const std::string& path)
{
    engine::Convert(engine::Work::Pain001, path, path + ".veu");
}

// A host's own way: COM loads the engine, and the work files are gone afterwards.
amounts::FileTotals Analyse(const std::string& path)
{
    amounts::FileTotals totals;
    char currency[4] = "";
    char errorText[256] = "";
    CoInitialize(nullptr);
    const int worked = amounts::GetMaxAmountFile({path.c_str(), "ISO20022", "pain.001", nullptr},
                                                 totals, currency, errorText);
    CoUninitialize();
    if (worked == 0)
    {
        throw std::runtime_error(errorText);
    }
    return totals;
}

// In the child. Reports its peak over its memory at the start in KiB, and what it found.
int Measure(const std::string& work, const std::string& path)
{
    const long before = StatusKiB("VmRSS:");
    amounts::FileTotals totals;
    if (work == "conversion")
    {
        Convert(path);
    }
    else if (work == "analysis")
    {
        totals = Analyse(path);
    }
    std::printf("%ld %d %.2f %.2f\n", StatusKiB("VmHWM:") - before, totals.orderCount,
                totals.totalAmount, totals.maxOrderAmount);
    return 0;
}

struct Measured
{
    double peakMiB = 0.0;
    amounts::FileTotals totals;
};

Measured MeasureInChild(const char* work, const std::string& path)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
    {
        throw std::runtime_error("no pipe");
    }
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl("/proc/self/exe", "order_memory_bench", work, path.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    std::FILE* const report = fdopen(ends[0], "r");
    Measured measured;
    long peakKiB = 0;
    const int read = std::fscanf(report, "%ld %d %lf %lf", &peakKiB, &measured.totals.orderCount,
                                 &measured.totals.totalAmount, &measured.totals.maxOrderAmount);
    std::fclose(report);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0 || read != 4)
    {
        throw std::runtime_error(std::string("the ") + work + " of " + path + " failed");
    }
    measured.peakMiB = static_cast<double>(peakKiB) / 1024.0;
    return measured;
}

bool Agrees(const amounts::FileTotals& totals, const OrderFileFacts& order)
{
    const auto cents = [](double amount)
    { return static_cast<std::uint64_t>(std::llround(amount * 100.0)); };
    return static_cast<std::uint64_t>(totals.orderCount) == order.orders &&
           cents(totals.totalAmount) == order.totalCents &&
           cents(totals.maxOrderAmount) == order.largestCents;
}

int Compare()
{
    benchmarks::PrintSetting("Peak memory of conversion and analysis, a process each");
    const benchmarks::DataFolder folder("order-memory-bench",
                                        kSizes[2] * benchmarks::kBytesPerOrder);
    const std::string path = folder.Path("order.xml");
    std::printf("\n%14s %12s %18s %18s\n", "transactions", "file", "conversion", "analysis");
    Measured smallest[2];
    bool kept = true;
    for (const std::uint64_t size : kSizes)
    {
        const OrderFileFacts order = benchmarks::WritePain001(path, size);
        const Measured measured[2] = {MeasureInChild("conversion", path),
                                      MeasureInChild("analysis", path)};
        if (!Agrees(measured[1].totals, order))
        {
            throw std::runtime_error("the analysis does not find what was generated");
        }
        std::printf("%14llu %8.1f MiB", static_cast<unsigned long long>(size),
                    static_cast<double>(order.bytes) / 1024.0 / 1024.0);
        for (int i = 0; i < 2; ++i)
        {
            if (size == kSizes[0])
            {
                smallest[i] = measured[i];
            }
            std::printf(" %+14.2f MiB", measured[i].peakMiB);
            kept = kept && measured[i].peakMiB < kMostMiB &&
                   measured[i].peakMiB - smallest[i].peakMiB < kMostGrowthMiB;
        }
        std::printf("\n");
    }
    std::printf("%14s %12s %14.2f MiB\n", "none", "", MeasureInChild("nothing", path).peakMiB);
    if (!kept)
    {
        std::fprintf(stderr,
                     "a peak is not under %.0f MiB, or more than %.0f MiB above that of "
                     "the smallest file\n",
                     kMostMiB, kMostGrowthMiB);
    }
    return kept ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3)
    {
        return Measure(argv[1], argv[2]);
    }
    return benchmarks::RunGuarded(Compare);
}
