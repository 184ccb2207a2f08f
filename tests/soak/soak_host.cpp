// soak_host CONNEXION NAME THREADS CHECKS
//
// A host under load: each thread makes so many checks, each on a session of its own, and tells what
// each came to. With 0 checks it goes on until it is killed. SIGTERM ends it behind the checks that
// are under way. Every order has a name of its own, NAME-thread-number, which its history rows and
// its events carry.

#include "signutils/signutils.h"
#include "tests/soak/orders.h"
#include "tests/soak/soak_state.h"
#include "tests/soak/told.h"

#include <nlohmann/json.hpp>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr long long kFootprints = 20; // a run

std::atomic<bool> g_ends{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler writes it");

void End(int)
{
    g_ends = true;
}

struct Task
{
    std::string connexion;
    std::string name;
    long long checks = 0; // of each thread; 0: without end
};

void JudgeOne(const Task& task, int thread, long long number)
{
    const soak::Order& order = soak::OrderAt(static_cast<std::size_t>(number + thread));
    soak::Told told;
    told.order = task.name + "-" + std::to_string(thread) + "-" + std::to_string(number);
    told.expected = order.verdict;
    // Of the five orders two are refused: every other turn asks for their reports.
    told.asked = number / 5 % 2 == 0;
    told.begun = soak::Microseconds();
    SignUtils session(nullptr, nullptr);
    soak::SetUp(session, task.connexion, order, told.asked);
    session.SetRefRequest(told.order.c_str());
    told.verdict = session.CheckSignRules(told.order.c_str(), order.signers);
    told.ended = soak::Microseconds();
    soak::Tell(told, session.GetLastCheck());
}

void TellFootprint(long long checks)
{
    const soak::Footprint now = soak::MeasureFootprint();
    soak::TellLine(nlohmann::json{
        {"footprint", checks}, {"residentKib", now.residentKib}, {"openFiles", now.openFiles}}
                       .dump());
}

void Work(const Task& task, int thread)
{
    for (long long number = 0; !g_ends && (task.checks == 0 || number < task.checks); ++number)
    {
        JudgeOne(task, thread, number);
        if (thread == 0 && task.checks >= kFootprints &&
            (number + 1) % (task.checks / kFootprints) == 0)
        {
            TellFootprint(number + 1);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5)
    {
        std::fprintf(stderr, "usage: signutils_soak_host CONNEXION NAME THREADS CHECKS\n");
        return 64;
    }
    std::signal(SIGTERM, End);
    const Task task = {argv[1], argv[2], std::atoll(argv[4])};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < std::atoi(argv[3]); ++thread)
    {
        threads.emplace_back([&task, thread] { Work(task, thread); });
    }
    for (std::thread& each : threads)
    {
        each.join();
    }
    return 0;
}
