#pragma once

#if !defined(_WIN32)
#include <cxxabi.h>
#endif

namespace port
{

#if defined(_WIN32)
/// Never raised: ending a thread does not unwind here.
struct ForcedUnwind
{
};
#else
/// Raised by the runtime while a thread is being cancelled; a handler for any exception must let
/// it pass, or the process ends.
using ForcedUnwind = abi::__forced_unwind;
#endif

} // namespace port
