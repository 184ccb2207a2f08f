// What does the containers' lock cost beside the platform's own recursive lock, uncontended,
// and when its owner takes it again?

#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "containers/tmutex.h"

#include <cstdio>
#include <future>
#include <mutex>
#include <thread>

namespace
{

constexpr std::uint64_t kTimes = 2'000'000;

// What stands between lock and unlock, so that neither can be left out.
std::uint64_t g_shared = 0;

template <typename Locked>
std::uint64_t Times(const Locked& locked)
{
    const std::uint64_t before = g_shared;
    for (std::uint64_t i = 0; i < kTimes; ++i)
    {
        locked();
    }
    return g_shared - before;
}

void Compare(std::recursive_mutex& platform, TMutex& ours)
{
    const auto lockPlatform = [&platform]
    {
        const std::lock_guard lock(platform);
        ++g_shared;
    };
    const auto lockOurs = [&ours]
    {
        const TMutexLocker locker(ours);
        ++g_shared;
    };
    benchmarks::TimeEachInTurn(
        {{"std::recursive_mutex", [&lockPlatform] { return Times(lockPlatform); }},
         {"TMutex", [&lockOurs] { return Times(lockOurs); }}},
        kTimes);
}

int Run()
{
    benchmarks::PrintSetting("The containers' lock beside the platform's recursive one");
    // Locks are cheaper while a process has one thread only, which no server has.
    std::promise<void> end;
    std::thread other([&end] { end.get_future().wait(); });
    std::recursive_mutex platform;
    TMutex ours;
    std::printf("\nlock and unlock, %llu times a round\n", static_cast<unsigned long long>(kTimes));
    Compare(platform, ours);
    std::printf("\nthe same while held already\n");
    const std::lock_guard held(platform);
    const TMutexLocker heldOurs(ours);
    Compare(platform, ours);
    end.set_value();
    other.join();
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
