#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::CheckConversion({engine::Work::Mt101, 4, fuzz::CountMtOrders}, fuzz::View(data, size));
    return 0;
}
