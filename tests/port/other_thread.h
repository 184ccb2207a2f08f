#pragma once

#include <thread>

/// Runs the action on a thread of its own to its end.
template <typename Action>
void OnAnotherThread(const Action& action)
{
    std::thread(action).join();
}
