#include "tests/fuzz/conversion_check.h"

#include "engine/failure.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/work_files.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace fuzz
{

namespace
{

using engine::ConversionMode;
using engine::Failure;
using engine::FailureNumber;

const std::string kOrder = "/orders/order.txt";
const std::string kStem = kOrder + ".veu";
constexpr std::array kEndings = {"", ".bp", ".cp", ".cp2", ".err", ".tot"};
constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

struct Run
{
    std::size_t firstRead = 0;
    std::size_t laterReads = 0;
    std::uint64_t failAfter = kNever;
    std::uint64_t cutAfter = kNever;
    ConversionMode mode = ConversionMode::WriteWorkFiles;
};

struct Outcome
{
    std::optional<Failure> failure;
    std::vector<std::string> files; ///< bytes of the work files, in the order of kEndings
};

bool Contains(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

// One line that says which file and, where the format was broken, where.
void CheckFailureText(const Failure& failure)
{
    const std::string& text = failure.Text();
    Require(Contains(text, "order.txt"), "a failure that names no file: ", text);
    Require(std::none_of(text.begin(), text.end(),
                         [](char c) { return static_cast<unsigned char>(c) < 0x20U; }),
            "a failure of several lines: ", text);
    switch (failure.Number())
    {
    case FailureNumber::Malformed:
    case FailureNumber::Hostile:
        Require(Contains(text, "line ") || Contains(text, "record "),
                "a failure without a position: ", text);
        break;
    case FailureNumber::OutputUnwritable:
        Require(Contains(text, "folder /orders/"), "a failure that names no folder: ", text);
        break;
    case FailureNumber::InputUnreadable:
    case FailureNumber::InputChanged:
    case FailureNumber::NotThisFormat:
        break;
    default:
        Require(false, "a failure of this kind cannot be: ", text);
    }
}

Outcome Convert(engine::Work work, std::string_view bytes, const Run& run)
{
    ResetFiles();
    PutFile(kOrder, bytes);
    LimitReads(run.firstRead, run.laterReads);
    FailAfter(run.failAfter);
    CutAfter(run.cutAfter, kOrder, bytes.size() / 2U);
    Outcome outcome;
    try
    {
        engine::Convert(work, kOrder, kStem, run.mode);
    }
    catch (const Failure& failure)
    {
        outcome.failure = failure;
        CheckFailureText(failure);
    }
    Require(run.cutAfter != kNever || FileBytes(kOrder) == bytes, "the order file was changed");
    std::vector<std::string> expected = {kOrder};
    if (!outcome.failure.has_value() && run.mode == ConversionMode::WriteWorkFiles)
    {
        for (const char* const ending : kEndings)
        {
            expected.push_back(kStem + ending);
            outcome.files.push_back(FileBytes(expected.back()));
        }
    }
    Require(FilePaths() == expected, "work files that are neither all there nor all gone");
    return outcome;
}

// The start of a message in several parts is looked for in the first block alone.
bool IsSeveralParts(const Outcome& outcome)
{
    return outcome.failure.has_value() && Contains(outcome.failure->Text(), "several parts");
}

void CompareWithSmallBlocks(const ConverterCase& converter, std::string_view bytes,
                            const Outcome& whole)
{
    Run run;
    run.firstRead = converter.lookAhead;
    run.laterReads = 1U + NumberOf(bytes) % 97U;
    const Outcome blocks = Convert(converter.work, bytes, run);
    if (IsSeveralParts(whole))
    {
        return;
    }
    Require(whole.failure.has_value() == blocks.failure.has_value(),
            "small blocks decide whether the file is converted");
    Require(!whole.failure.has_value() || whole.failure->Number() == blocks.failure->Number(),
            "small blocks decide why the file is refused");
    Require(whole.files == blocks.files, "small blocks change the work files");
}

void CheckWithoutWriting(const ConverterCase& converter, std::string_view bytes,
                         const Outcome& whole)
{
    Run run;
    run.mode = ConversionMode::CheckOnly;
    const Outcome checked = Convert(converter.work, bytes, run);
    Require(checked.failure.has_value() == whole.failure.has_value(),
            "a check fails otherwise than the conversion");
}

void CheckWithFailingDisk(const ConverterCase& converter, std::string_view bytes,
                          std::uint64_t operations)
{
    Run run;
    run.failAfter = (NumberOf(bytes) >> 8U) % operations;
    const Outcome failed = Convert(converter.work, bytes, run);
    Require(HasFailed() && failed.failure.has_value(), "a failing disk is passed over");
}

// What is cut before it is read whole is told; after that it does not matter.
void CheckWithCutFile(const ConverterCase& converter, std::string_view bytes, const Outcome& whole,
                      std::uint64_t operations)
{
    Run run;
    run.firstRead = converter.lookAhead;
    run.laterReads = converter.lookAhead;
    run.cutAfter = 1U + (NumberOf(bytes) >> 16U) % operations;
    const Outcome cut = Convert(converter.work, bytes, run);
    const bool told =
        cut.failure.has_value() && cut.failure->Number() == FailureNumber::InputChanged;
    const bool same =
        cut.failure.has_value() == whole.failure.has_value() && cut.files == whole.files;
    Require(told || same, "a file that was cut is converted");
}

} // namespace

void CheckConversion(const ConverterCase& converter, std::string_view bytes)
{
    const Outcome whole = Convert(converter.work, bytes, Run());
    const std::uint64_t operations = OperationCount();
    if (!whole.failure.has_value())
    {
        const WorkFiles files = ReadWorkFiles(kStem);
        CheckWorkFiles(files);
        Require(converter.countOrders(bytes) == files.orders.size(), "an order is left out");
    }
    CompareWithSmallBlocks(converter, bytes, whole);
    // One of the rest for each input: inputs are many.
    switch (NumberOf(bytes) % 3U)
    {
    case 0:
        return CheckWithoutWriting(converter, bytes, whole);
    case 1:
        return CheckWithFailingDisk(converter, bytes, operations);
    default:
        return CheckWithCutFile(converter, bytes, whole, operations);
    }
}

} // namespace fuzz
