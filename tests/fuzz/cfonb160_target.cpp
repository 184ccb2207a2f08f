#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto count = [](std::string_view bytes) { return fuzz::CountRecords(bytes, 160, "06"); };
    fuzz::CheckConversion({engine::Work::Cfonb160, 165, count}, fuzz::View(data, size));
    return 0;
}
