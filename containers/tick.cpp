#include "containers/tick.h"

#include "port/kernel.h"

#include <atomic>

namespace containers
{

namespace
{

std::atomic<TickSource> g_source = nullptr;

} // namespace

void SetTickSource(TickSource source) noexcept
{
    g_source.store(source);
}

std::uint32_t CurrentTick() noexcept
{
    const TickSource source = g_source.load();
    return source != nullptr ? source() : static_cast<std::uint32_t>(GetTickCount());
}

} // namespace containers
