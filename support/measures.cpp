#include "support/measures.h"

namespace support
{

void StartMeasures()
{
    static Measures measures;
    Measures* none = nullptr;
    g_measures.compare_exchange_strong(none, &measures, std::memory_order_acq_rel);
}

} // namespace support
