#pragma once

#include "services/tpipeexception.h"

#include <exception>

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
    catch (...)
    {
        // What unwinds a cancelled thread is no C++ exception, and a handler that ends it ends the
        // process.
        if (std::current_exception() == nullptr)
        {
            throw;
        }
        onOther();
    }
    return false;
}

} // namespace services
