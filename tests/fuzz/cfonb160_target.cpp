#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::RecordCodes codes = {"06", "03", "07", "08", "16"};
    const auto count = [](std::string_view bytes) { return fuzz::CountRecords(bytes, 160, codes); };
    fuzz::CheckConversion({engine::Work::Cfonb160, 245, count}, fuzz::View(data, size));
    return 0;
}
