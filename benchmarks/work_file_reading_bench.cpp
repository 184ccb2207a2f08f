// How fast are a ".veu.cp" of a million rows analysed and split beside the least that the same work
// can cost? Every contender reads the file in blocks of the same size. Floors: a scan that finds
// line ends with memchr and quotes with vector instructions, no further than the third of the
// analysis' columns, and knows neither escapes nor CR LF nor amounts; for the texts, a split at
// every quote into strings that are used again.

#include "amounts/format_conversion.h"
#include "amounts/tdelimitedfile.h"
#include "benchmarks/order_files.h"
#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "port/byte_mask.h"
#include "port/files.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr std::uint64_t kOrders = 1'000'000;
constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
constexpr std::uint64_t kHeaderLines = 4;
constexpr std::size_t kColumns = 18;
constexpr std::array<std::size_t, 3> kAnalysed = {1, 4, 5};

// Gives each line of the file without its line feed.
template <typename Look>
void ScanLines(const std::string& path, Look&& look)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        throw std::runtime_error("cannot read " + path);
    }
    std::vector<char> block(kBlockSize);
    std::size_t kept = 0;
    for (std::int64_t size = 0; (size = file.Read(block.data() + kept, block.size() - kept)) > 0;)
    {
        const char* at = block.data();
        const char* const end = at + kept + size;
        const auto feedBehind = [&]
        {
            const void* const feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
            return static_cast<const char*>(feed);
        };
        for (const char* feed = nullptr; (feed = feedBehind()) != nullptr; at = feed + 1)
        {
            look(std::string_view(at, static_cast<std::size_t>(feed - at)));
        }
        kept = static_cast<std::size_t>(end - at);
        std::memmove(block.data(), at, kept);
    }
}

std::uint64_t CountRows(const std::string& path)
{
    std::uint64_t lines = 0;
    ScanLines(path, [&](std::string_view) { ++lines; });
    return lines - kHeaderLines;
}

// The characters of the analysed columns, by the places of their quotes.
std::uint64_t ScanAnalysed(std::string_view line)
{
    std::uint64_t characters = 0;
    std::size_t quotes = 0;
    std::size_t opening = 0;
    for (std::size_t at = 0; at < line.size(); at += port::kMaskWidth)
    {
        const std::size_t length = std::min(line.size() - at, port::kMaskWidth);
        for (std::uint64_t mask = port::ByteMask(line.data() + at, length, '"'); mask != 0;
             mask &= mask - 1U, ++quotes)
        {
            const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(mask));
            const std::size_t column = quotes / 2U;
            if (column != kAnalysed[0] && column != kAnalysed[1] && column != kAnalysed[2])
            {
                continue;
            }
            if (quotes % 2U == 0)
            {
                opening = place;
                continue;
            }
            characters += place - opening - 1U;
            if (column == kAnalysed.back())
            {
                return characters;
            }
        }
    }
    return characters;
}

std::uint64_t ScanColumns(const std::string& path)
{
    std::uint64_t characters = 0;
    std::uint64_t lines = 0;
    ScanLines(path,
              [&](std::string_view line)
              {
                  ++lines;
                  characters += lines > kHeaderLines ? ScanAnalysed(line) : 0U;
              });
    return characters;
}

using Texts = std::vector<std::string>;

// Fields hold no quote, so every second stretch between quotes is one.
void SplitAtQuotes(std::string_view line, Texts& texts)
{
    for (std::string& text : texts)
    {
        const std::size_t opening = line.find('"');
        const std::size_t closing = line.find('"', opening + 1U);
        text.assign(line, opening + 1U, closing - opening - 1U);
        line.remove_prefix(closing + 1U);
    }
}

std::uint64_t SplitTexts(const std::string& path)
{
    Texts texts(kColumns);
    std::uint64_t characters = 0;
    std::uint64_t lines = 0;
    ScanLines(path,
              [&](std::string_view line)
              {
                  if (++lines > kHeaderLines)
                  {
                      SplitAtQuotes(line, texts);
                      characters += texts.front().size() + texts.back().size();
                  }
              });
    return characters;
}

template <typename Look>
void ReadRows(const std::string& path, Look&& look)
{
    TDelimitedFile file(path.c_str(), 0);
    for (bool more = file.HasRow(); more; more = file.NextRow())
    {
        look(file.CurrentRow());
    }
}

std::uint64_t ReadColumns(const std::string& path)
{
    std::uint64_t characters = 0;
    ReadRows(path,
             [&](const amounts::DelimitedRow& row)
             {
                 for (const std::size_t column : kAnalysed)
                 {
                     characters += row.GetAt(column).size();
                 }
             });
    return characters;
}

std::uint64_t ReadTexts(const std::string& path)
{
    Texts texts(kColumns);
    std::uint64_t characters = 0;
    ReadRows(path,
             [&](const amounts::DelimitedRow& row)
             {
                 for (std::size_t column = 0; column < kColumns; ++column)
                 {
                     texts[column] = row.GetAt(column);
                 }
                 characters += texts.front().size() + texts.back().size();
             });
    return characters;
}

std::uint64_t ReadViews(const std::string& path)
{
    std::uint64_t rows = 0;
    ReadRows(path,
             [&](const amounts::DelimitedRow& row)
             {
                 for (std::size_t column = 0; column < kColumns; ++column)
                 {
                     benchmark::DoNotOptimize(row.GetAt(column));
                 }
                 ++rows;
             });
    return rows;
}

amounts::FileTotals Analyse(const std::string& order)
{
    amounts::FileTotals totals;
    char errorText[256] = "";
    amounts::ReadFileTotals({order.c_str(), "ISO20022", "pain.001", nullptr}, totals, nullptr,
                            errorText);
    return totals;
}

// The fields with their quotes and separators must be every byte behind the header.
std::uint64_t BytesOfFields(const std::string& path)
{
    std::uint64_t bytes = 0;
    ReadRows(path,
             [&](const amounts::DelimitedRow& row)
             {
                 for (std::size_t column = 0; column < kColumns; ++column)
                 {
                     bytes += row.GetAt(column).size() + std::strlen("\"\";");
                 }
                 bytes += std::strlen("\r\n") - std::strlen(";");
             });
    return bytes;
}

std::uint64_t BytesOfRows(const std::string& path)
{
    std::uint64_t bytes = 0;
    std::uint64_t lines = 0;
    ScanLines(path, [&](std::string_view line)
              { bytes += ++lines > kHeaderLines ? line.size() + 1U : 0U; });
    return bytes;
}

void CompareContenders(const benchmarks::OrderFileFacts& order, const std::string& path)
{
    const amounts::FileTotals totals = Analyse(order.path);
    const double largest = static_cast<double>(order.largestCents) / 100.0;
    if (CountRows(path) != kOrders || ReadViews(path) != kOrders ||
        BytesOfRows(path) != BytesOfFields(path) || ScanColumns(path) != ReadColumns(path) ||
        SplitTexts(path) != ReadTexts(path) || totals.orderCount != static_cast<int>(kOrders) ||
        totals.maxOrderAmount != largest || !totals.complete)
    {
        throw std::runtime_error("the contenders do not agree on " + path);
    }
}

int Run()
{
    benchmarks::PrintSetting("Rows of \".veu.cp\" beside scans that do no more than they must");
    const benchmarks::DataFolder folder("work-file-reading-bench",
                                        kOrders * benchmarks::kBytesPerOrder);
    const benchmarks::OrderFileFacts order =
        benchmarks::WritePain001(folder.Path("order.xml"), kOrders);
    engine::Convert(engine::Work::Pain001, order.path, order.path + ".veu");
    const std::string path = order.path + ".veu.cp";
    CompareContenders(order, path);
    const std::uintmax_t bytes = std::filesystem::file_size(path);
    std::printf("\n%llu rows of %zu columns, %.1f MiB, cached\n\nthe analysis\n",
                static_cast<unsigned long long>(kOrders), kColumns,
                static_cast<double>(bytes) / 1024.0 / 1024.0);
    benchmarks::TimeInTurn(
        {
            {"quote scan for three columns", [&] { return ScanColumns(path); }},
            {"line scan", [&] { return CountRows(path); }},
            {"rows, the same three columns", [&] { return ReadColumns(path); }},
            {"analysis: amounts, largest, count",
             [&] { return static_cast<std::uint64_t>(Analyse(order.path).orderCount); }},
        },
        bytes);
    std::printf("\nrows as arrays of texts\n");
    benchmarks::TimeInTurn(
        {
            {"splitting into reused strings", [&] { return SplitTexts(path); }},
            {"rows, each field into a string", [&] { return ReadTexts(path); }},
            {"rows, each field looked at", [&] { return ReadViews(path); }},
        },
        bytes);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
