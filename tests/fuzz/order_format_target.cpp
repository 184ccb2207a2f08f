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
// that does not know it while another does.

namespace
{

const std::string kOrder = "/orders/order.txt";

// Why the engine does not convert the file as this format.
engine::FailureNumber FailureAs(const host::OrderFormat& format)
{
    engine::Work work{};
    fuzz::Require(engine::FindWork(format.format1, format.format2, work),
                  "a format that the engine does not know");
    try
    {
        engine::Convert(work, kOrder, kOrder + ".veu", engine::ConversionMode::CheckOnly);
        return engine::FailureNumber::None;
    }
    catch (const engine::Failure& failure)
    {
        return failure.Number();
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
    fuzz::ResetFiles();
    fuzz::PutFile(kOrder, fuzz::View(data, size));
    const std::optional<host::OrderFormat> found = Recognise();
    if (!found.has_value() || FailureAs(*found) != engine::FailureNumber::NotThisFormat)
    {
        return 0;
    }
    for (const host::OrderFormat& other : host::AllOrderFormats())
    {
        fuzz::Require(FailureAs(other) != engine::FailureNumber::None,
                      found->Name() + " is recognised, " + other.Name() + " is it");
    }
    return 0;
}
