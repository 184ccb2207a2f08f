#include "tests/fuzz/conversion_check.h"
#include "tests/fuzz/order_counts.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto count = [](std::string_view bytes)
    { return fuzz::CountPainOrders(bytes, "CstmrCdtTrfInitn", "pain.001.", "CdtTrfTxInf"); };
    fuzz::CheckConversion({engine::Work::Pain001, 1, count}, fuzz::View(data, size));
    return 0;
}
