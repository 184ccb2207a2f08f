#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::RecordCodes codes = {"04", "03", "05", "06", "07", "08"};
    const auto count = [](std::string_view bytes) { return fuzz::CountRecords(bytes, 320, codes); };
    fuzz::CheckConversion({engine::Work::Cfonb320, 485, count}, fuzz::View(data, size));
    return 0;
}
