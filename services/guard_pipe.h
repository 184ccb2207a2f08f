#pragma once

#include "port/unwind.h"
#include "services/tpipeexception.h"

namespace services
{

/// The handlers round a call of the file hand-off client: runs `body`; a TPipeException goes to
/// `onPipe`, any other exception to `onOther`. Returns whether `body` ended normally. The unwinding
/// of a cancelled thread passes through.
template <typename Body, typename OnPipe, typename OnOther>
bool GuardPipe(Body&& body, OnPipe&& onPipe, OnOther&& onOther)
{
    try
    {
        body();
        return true;
    }
    catch (const TPipeException& raised)
    {
        onPipe(raised);
    }
    catch (port::ForcedUnwind&)
    {
        throw;
    }
    catch (...)
    {
        onOther();
    }
    return false;
}

} // namespace services
