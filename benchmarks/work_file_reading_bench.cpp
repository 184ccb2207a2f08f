// How fast are the rows of a ".veu.cp" read beside a bare line scan? The floor reads the same file
// in blocks of the same size and finds the line ends with memchr. The reader's contenders give
// every row; the analysis' columns of every row; every field of every row. All run in turn in one
// run.

#include "amounts/tdelimitedfile.h"
#include "benchmarks/order_files.h"
#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "port/files.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

constexpr std::uint64_t kOrders = 1'000'000;
constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
constexpr std::uint64_t kHeaderLines = 4;
constexpr std::size_t kColumns = 18;

// The rows of the file: its lines without the header's.
std::uint64_t ScanLines(const std::string& path)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        throw std::runtime_error("cannot read " + path);
    }
    std::vector<char> block(kBlockSize);
    std::uint64_t lines = 0;
    for (std::int64_t size = 0; (size = file.Read(block.data(), block.size())) > 0;)
    {
        const char* at = block.data();
        const char* const end = at + size;
        while ((at = static_cast<const char*>(
                    std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) != nullptr)
        {
            ++lines;
            ++at;
        }
    }
    return lines - kHeaderLines;
}

template <typename Look>
std::uint64_t ReadRows(const std::string& path, Look&& look)
{
    TDelimitedFile file(path.c_str(), 0);
    std::uint64_t rows = 0;
    for (bool more = file.HasRow(); more; more = file.NextRow())
    {
        look(file.CurrentRow());
        ++rows;
    }
    return rows;
}

void LookAtAnalysedColumns(const amounts::DelimitedRow& row)
{
    for (const std::size_t column : {1U, 4U, 5U})
    {
        benchmark::DoNotOptimize(row.GetAt(column));
    }
}

void LookAtAllFields(const amounts::DelimitedRow& row)
{
    for (std::size_t column = 0; column < kColumns; ++column)
    {
        benchmark::DoNotOptimize(row.GetAt(column));
    }
}

// The fields with their quotes and separators must be every byte behind the header.
void CompareContenders(const std::string& path)
{
    std::uint64_t header = 0;
    std::ifstream file(path, std::ios::binary);
    std::string line;
    for (std::uint64_t i = 0; i < kHeaderLines && std::getline(file, line); ++i)
    {
        header += line.size() + 1U;
    }
    std::uint64_t bytes = header;
    const std::uint64_t rows =
        ReadRows(path,
                 [&](const amounts::DelimitedRow& row)
                 {
                     for (std::size_t column = 0; column < kColumns; ++column)
                     {
                         bytes += row.GetAt(column).size() + std::strlen("\"\";");
                     }
                     bytes += std::strlen("\r\n") - std::strlen(";");
                 });
    if (rows != kOrders || ScanLines(path) != kOrders || bytes != std::filesystem::file_size(path))
    {
        throw std::runtime_error("the contenders do not agree on " + path);
    }
}

int Run()
{
    benchmarks::PrintSetting("Rows of \".veu.cp\" beside a bare memchr line scan");
    const benchmarks::DataFolder folder("work-file-reading-bench",
                                        kOrders * benchmarks::kBytesPerOrder);
    const std::string order = folder.Path("order.xml");
    benchmarks::WritePain001(order, kOrders);
    engine::Convert(engine::Work::Pain001, order, order + ".veu");
    const std::string path = order + ".veu.cp";
    CompareContenders(path);
    const std::uintmax_t bytes = std::filesystem::file_size(path);
    std::printf("\n%llu rows of %zu columns, %.1f MiB, cached\n",
                static_cast<unsigned long long>(kOrders), kColumns,
                static_cast<double>(bytes) / 1024.0 / 1024.0);
    benchmarks::TimeInTurn(
        {
            {"memchr line scan", [&] { return ScanLines(path); }},
            {"rows",
             [&]
             {
                 return ReadRows(path, [](const amounts::DelimitedRow& row)
                                 { benchmark::DoNotOptimize(&row); });
             }},
            {"rows, the analysis' three columns",
             [&] { return ReadRows(path, LookAtAnalysedColumns); }},
            {"rows as fields", [&] { return ReadRows(path, LookAtAllFields); }},
        },
        bytes);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
