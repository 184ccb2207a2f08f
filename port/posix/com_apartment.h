#pragma once

namespace port
{

/// Whether COM is initialised on the calling thread.
bool ThreadHasApartment();

} // namespace port
