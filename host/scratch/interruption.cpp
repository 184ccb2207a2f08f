#include "host/scratch/interruption.h"

#include <csignal>
#include <cstddef>
#include <iterator>

namespace scratch
{

namespace
{

using Handler = void (*)(int);

constexpr int kSignals[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t g_hasCome = 0;
// A command is one thread.
int g_alive = 0;
Handler g_before[std::size(kSignals)] = {};

extern "C" void Note(int number)
{
    g_hasCome = 1;
    std::signal(number, SIG_DFL);
}

} // namespace

// Of commands that write nothing before they have asked on their copies; one that has, tells its
// user itself.
Interrupted::Interrupted()
    : Refusal(host::kCouldNotRun,
              "the command was interrupted; nothing was written to the database.")
{
}

Interruption::Interruption()
{
    if (g_alive++ > 0)
    {
        return;
    }
    g_hasCome = 0;
    for (std::size_t index = 0; index < std::size(kSignals); ++index)
    {
        g_before[index] = std::signal(kSignals[index], Note);
        if (g_before[index] == SIG_IGN)
        {
            std::signal(kSignals[index], SIG_IGN); // whoever started the command wants that
        }
    }
}

Interruption::~Interruption()
{
    if (--g_alive > 0)
    {
        return;
    }
    for (std::size_t index = 0; index < std::size(kSignals); ++index)
    {
        std::signal(kSignals[index], g_before[index] == SIG_ERR ? SIG_DFL : g_before[index]);
    }
}

bool Interruption::HasCome() noexcept
{
    return g_hasCome != 0;
}

void Interruption::Check()
{
    if (HasCome())
    {
        throw Interrupted();
    }
}

} // namespace scratch
