// What does the conversion of a pain.001 cost beside the XML library alone? The floor reads the
// same file in blocks of the same size through the same push parser with the same options, into
// handlers that do nothing. Both run in turn in one run, on files of three sizes; the ratio is the
// figure.

#include "amounts/tdelimitedfile.h"
#include "amounts/work_files.h"
#include "benchmarks/order_files.h"
#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "engine/convert.h"
#include "support/format.h"

#include <libxml/parser.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using benchmarks::OrderFileFacts;

constexpr std::uint64_t kSizes[] = {10'000, 100'000, 1'000'000};
constexpr std::size_t kBlockSize = std::size_t{64} * 1024;

// What a bare pass tells of a document when it looks at all.
struct Counted
{
    std::uint64_t orders = 0;
    std::uint64_t totalCents = 0;
    std::string amount;
    bool inAmount = false;
};

void StartNothing(void* /*context*/, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                  const xmlChar* /*uri*/, int /*namespaceCount*/, const xmlChar** /*namespaces*/,
                  int /*attributeCount*/, int /*defaulted*/, const xmlChar** /*attributes*/)
{
}

void EndNothing(void* /*context*/, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                const xmlChar* /*uri*/)
{
}

void CharactersNothing(void* /*context*/, const xmlChar* /*text*/, int /*length*/) {}

void StartCounting(void* context, const xmlChar* name, const xmlChar* /*prefix*/,
                   const xmlChar* /*uri*/, int /*namespaceCount*/, const xmlChar** /*namespaces*/,
                   int /*attributeCount*/, int /*defaulted*/, const xmlChar** /*attributes*/)
{
    auto& counted = *static_cast<Counted*>(context);
    const std::string_view element = reinterpret_cast<const char*>(name);
    counted.orders += element == "CdtTrfTxInf" ? 1U : 0U;
    counted.inAmount = element == "InstdAmt";
    counted.amount.clear();
}

void EndCounting(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                 const xmlChar* /*uri*/)
{
    auto& counted = *static_cast<Counted*>(context);
    if (counted.inAmount)
    {
        counted.amount.erase(counted.amount.find('.'), 1);
        counted.totalCents += std::stoull(counted.amount);
        counted.inAmount = false;
    }
}

void CharactersCounting(void* context, const xmlChar* text, int length)
{
    auto& counted = *static_cast<Counted*>(context);
    if (counted.inAmount)
    {
        counted.amount.append(reinterpret_cast<const char*>(text),
                              static_cast<std::size_t>(length));
    }
}

xmlSAXHandler Handlers(startElementNsSAX2Func start, endElementNsSAX2Func end,
                       charactersSAXFunc characters)
{
    xmlSAXHandler handlers;
    std::memset(&handlers, 0, sizeof handlers);
    handlers.initialized = XML_SAX2_MAGIC;
    handlers.startElementNs = start;
    handlers.endElementNs = end;
    handlers.characters = characters;
    handlers.cdataBlock = characters;
    handlers.ignorableWhitespace = characters;
    return handlers;
}

// The XML library over the file, in the engine's blocks. The bytes read.
std::uint64_t ParseBare(const std::string& path, xmlSAXHandler handlers, Counted* counted)
{
    port::File file;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
        xmlCreatePushParserCtxt(&handlers, counted, nullptr, 0, nullptr), xmlFreeParserCtxt);
    if (parser == nullptr || !file.Open(path.c_str(), port::OpenMode::Read))
    {
        throw std::runtime_error("cannot parse " + path);
    }
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET);
    std::vector<char> block(kBlockSize);
    std::uint64_t bytes = 0;
    int problem = XML_ERR_OK;
    std::int64_t size = 0;
    do
    {
        size = file.Read(block.data(), block.size());
        bytes += static_cast<std::uint64_t>(size);
        problem = xmlParseChunk(parser.get(), block.data(), static_cast<int>(size), size == 0);
    } while (size > 0 && problem == XML_ERR_OK);
    if (problem != XML_ERR_OK || size < 0)
    {
        throw std::runtime_error("the bare pass does not read " + path);
    }
    return bytes;
}

std::uint64_t Convert(const OrderFileFacts& order)
{
    engine::Convert(engine::Work::Pain001, order.path, order.path + ".veu");
    return order.bytes;
}

void RemoveWorkFiles(const OrderFileFacts& order)
{
    for (const char* const extension : {"", ".bp", ".cp", ".cp2", ".tot", ".err"})
    {
        std::filesystem::remove(order.path + ".veu" + extension);
    }
}

// Both must find the orders and the total that were generated before they are timed.
void CompareContenders(const OrderFileFacts& order)
{
    Counted counted;
    ParseBare(order.path, Handlers(StartCounting, EndCounting, CharactersCounting), &counted);
    Convert(order);
    TDelimitedFile totals((order.path + ".veu.tot").c_str(), 0);
    // The row of the whole file stands behind those of its remittances.
    while (totals.CurrentRow().GetAt(0) != amounts::kWholeFileRecord && totals.NextRow())
    {
    }
    const std::string_view total = totals.CurrentRow().GetAt(2);
    const std::string expected =
        support::FormatA("%I64u.%02u", static_cast<unsigned long long>(order.totalCents / 100U),
                         static_cast<unsigned>(order.totalCents % 100U));
    if (counted.orders != order.orders || counted.totalCents != order.totalCents ||
        totals.CurrentRow().GetAt(4) != std::to_string(order.orders) || total != expected)
    {
        throw std::runtime_error("the contenders do not agree on " + order.path);
    }
}

int Run()
{
    benchmarks::PrintSetting("Conversion of pain.001 beside a bare pass of the XML library");
    std::printf("library:  libxml2 %s\n", LIBXML_DOTTED_VERSION);
    const benchmarks::DataFolder folder("pain-conversion-bench",
                                        kSizes[2] * benchmarks::kBytesPerOrder);
    for (const std::uint64_t size : kSizes)
    {
        const OrderFileFacts order = benchmarks::WritePain001(folder.Path("order.xml"), size);
        CompareContenders(order);
        const xmlSAXHandler nothing = Handlers(StartNothing, EndNothing, CharactersNothing);
        std::printf("\n%llu transactions, %.1f MiB\n", static_cast<unsigned long long>(size),
                    static_cast<double>(order.bytes) / 1024.0 / 1024.0);
        benchmarks::TimeInTurn(
            {
                {"XML library alone", [&] { return ParseBare(order.path, nothing, nullptr); }},
                {"conversion into work files", [&] { return Convert(order); },
                 [&] { RemoveWorkFiles(order); }},
            },
            order.bytes);
    }
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
