// How fast are the rows of a ".veu.cp" beside readers of separated values that Debian packages?
// Each reader counts the orders and finds the largest amount in cents; the library's line is its
// whole analysis, which also checks currencies and adds up. libcsv hands over field by field;
// Python's csv is a program of its own, so that its processor time is not in its column, only in
// the elapsed one.

#include "amounts/format_conversion.h"
#include "amounts/tdelimitedfile.h"
#include "benchmarks/order_files.h"
#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "port/files.h"

#include <csv.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr std::uint64_t kOrders = 1'000'000;
constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
constexpr std::size_t kHeaderLines = 4;
constexpr std::size_t kColumns = 18;
constexpr std::size_t kAmount = 4;

/// What every contender finds.
struct Found
{
    std::uint64_t orders = 0;
    double largest = 0.0;

    void Add(std::string_view amount)
    {
        double value = 0.0;
        std::from_chars(amount.data(), amount.data() + amount.size(), value);
        largest = std::max(largest, value);
        ++orders;
    }

    /// One number for both: the largest amount has fewer than 12 digits in cents.
    std::uint64_t Sum() const
    {
        return orders * 1'000'000'000'000U +
               static_cast<std::uint64_t>(std::llround(largest * 100));
    }
};

std::uint64_t Analyse(const std::string& order)
{
    amounts::FileTotals totals;
    char errorText[256] = "";
    amounts::ReadFileTotals({order.c_str(), "ISO20022", "pain.001", nullptr}, totals, nullptr,
                            errorText);
    return Found{static_cast<std::uint64_t>(totals.orderCount), totals.maxOrderAmount}.Sum();
}

std::uint64_t ReadRows(const std::string& path)
{
    Found found;
    TDelimitedFile file(path.c_str(), 0);
    for (bool more = file.HasRow(); more; more = file.NextRow())
    {
        found.Add(file.CurrentRow().GetAt(kAmount));
    }
    return found.Sum();
}

/// A row as libcsv hands it over.
struct PeerRow
{
    Found found;
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t characters = 0;
};

void TakeField(void* text, std::size_t size, void* row)
{
    PeerRow& peer = *static_cast<PeerRow*>(row);
    if (peer.line >= kHeaderLines)
    {
        peer.characters += size;
        if (peer.column == kAmount)
        {
            peer.found.Add({static_cast<const char*>(text), size});
        }
    }
    ++peer.column;
}

void EndRow(int, void* row)
{
    PeerRow& peer = *static_cast<PeerRow*>(row);
    ++peer.line;
    peer.column = 0;
}

PeerRow ReadWithLibcsv(const std::string& path)
{
    port::File file;
    csv_parser parser;
    if (!file.Open(path.c_str(), port::OpenMode::Read) || csv_init(&parser, 0) != 0)
    {
        throw std::runtime_error("libcsv cannot read " + path);
    }
    csv_set_delim(&parser, ';');
    PeerRow row;
    std::vector<char> block(kBlockSize);
    for (std::int64_t size = 0; (size = file.Read(block.data(), block.size())) > 0;)
    {
        const auto bytes = static_cast<std::size_t>(size);
        if (csv_parse(&parser, block.data(), bytes, TakeField, EndRow, &row) != bytes)
        {
            csv_free(&parser);
            throw std::runtime_error(std::string("libcsv: ") + csv_strerror(csv_error(&parser)));
        }
    }
    csv_fini(&parser, TakeField, EndRow, &row);
    csv_free(&parser);
    return row;
}

std::uint64_t CharactersOfFields(const std::string& path)
{
    std::uint64_t characters = 0;
    TDelimitedFile file(path.c_str(), 0);
    for (bool more = file.HasRow(); more; more = file.NextRow())
    {
        for (std::size_t column = 0; column < kColumns; ++column)
        {
            characters += file.CurrentRow().GetAt(column).size();
        }
    }
    return characters;
}

// The path is the bench's own, without quotes and blanks of the shell.
std::uint64_t ReadWithPython(const std::string& path)
{
    const std::string command = "python3 -c \"\n"
                                "import csv\n"
                                "orders = largest = 0\n"
                                "with open('" +
                                path +
                                "', encoding='cp1252', newline='') as file:\n"
                                "    rows = csv.reader(file, delimiter=';')\n"
                                "    for number, row in enumerate(rows):\n"
                                "        if number >= " +
                                std::to_string(kHeaderLines) +
                                ":\n"
                                "            orders += 1\n"
                                "            largest = max(largest, float(row[" +
                                std::to_string(kAmount) +
                                "]))\n"
                                "print(orders, largest)\n\"";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> program(popen(command.c_str(), "r"),
                                                                  pclose);
    Found found;
    unsigned long long orders = 0;
    if (program == nullptr || std::fscanf(program.get(), "%llu %lf", &orders, &found.largest) != 2)
    {
        throw std::runtime_error("Python's csv does not read " + path);
    }
    found.orders = orders;
    return found.Sum();
}

int Run()
{
    benchmarks::PrintSetting("Rows of \".veu.cp\" beside packaged readers of separated values");
    const benchmarks::DataFolder folder("csv-peers-bench", kOrders * benchmarks::kBytesPerOrder);
    const benchmarks::OrderFileFacts order =
        benchmarks::WritePain001(folder.Path("order.xml"), kOrders);
    engine::Convert(engine::Work::Pain001, order.path, order.path + ".veu");
    const std::string path = order.path + ".veu.cp";
    const Found expected{kOrders, static_cast<double>(order.largestCents) / 100.0};
    if (Analyse(order.path) != expected.Sum() ||
        ReadWithLibcsv(path).characters != CharactersOfFields(path))
    {
        throw std::runtime_error("the contenders do not agree on " + path);
    }
    std::printf("\n%llu rows of %zu columns\n", static_cast<unsigned long long>(kOrders), kColumns);
    benchmarks::TimeInTurn(
        {
            {"analysis: amounts, largest, count", [&] { return Analyse(order.path); }},
            {"rows, the amount by from_chars", [&] { return ReadRows(path); }},
            {"libcsv", [&] { return ReadWithLibcsv(path).found.Sum(); }},
            {"Python's csv, elapsed alone", [&] { return ReadWithPython(path); }},
        },
        std::filesystem::file_size(path));
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
