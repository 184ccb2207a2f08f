#include "engine/convert.h"
#include "engine/failure.h"
#include "host/format_recognition.h"
#include "host/refusal.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <optional>
#include <string>

// The recognition of an order file's format beside the converters: it must not send a file to one
// that does not know it while another reads it without a single error.

namespace
{

const std::string kOrder = "/orders/order.txt";

struct Reading
{
    engine::FailureNumber failure = engine::FailureNumber::None;
    bool clean = false; ///< converted, with nothing to tell
};

Reading ReadAs(const host::OrderFormat& format, std::string_view bytes)
{
    fuzz::ResetFiles();
    fuzz::PutFile(kOrder, bytes);
    engine::Work work{};
    fuzz::Require(engine::FindWork(format.format1, format.format2, work),
                  "a format that the engine does not know");
    try
    {
        engine::Convert(work, kOrder, kOrder + ".veu");
        const std::string& errors = fuzz::FileBytes(kOrder + ".veu.err");
        return {engine::FailureNumber::None, std::count(errors.begin(), errors.end(), '\n') == 1};
    }
    catch (const engine::Failure& failure)
    {
        return {failure.Number(), false};
    }
}

void CheckRefusal(const std::string& text)
{
    fuzz::Require(text.find(kOrder) != std::string::npos, "a refusal that names no file: ", text);
    fuzz::Require(std::none_of(text.begin(), text.end(),
                               [](char c) { return static_cast<unsigned char>(c) < 0x20U; }),
                  "a refusal of several lines: ", text);
}

std::optional<host::OrderFormat> Recognise()
{
    try
    {
        return host::RecogniseOrderFormat(kOrder);
    }
    catch (const host::Refusal& refusal)
    {
        CheckRefusal(refusal.what());
        return std::nullopt;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::View(data, size);
    fuzz::ResetFiles();
    fuzz::PutFile(kOrder, bytes);
    const std::optional<host::OrderFormat> found = Recognise();
    if (!found.has_value() || ReadAs(*found, bytes).failure != engine::FailureNumber::NotThisFormat)
    {
        return 0;
    }
    for (const host::OrderFormat& other : host::AllOrderFormats())
    {
        fuzz::Require(!ReadAs(other, bytes).clean,
                      found->Name() + " is recognised, " + other.Name() + " is it");
    }
    return 0;
}
