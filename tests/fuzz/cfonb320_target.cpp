#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto count = [](std::string_view bytes) { return fuzz::CountRecords(bytes, 320, "04"); };
    fuzz::CheckConversion({engine::Work::Cfonb320, 325, count}, fuzz::View(data, size));
    return 0;
}
