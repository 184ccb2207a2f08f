// boundary_host CONNEXION ORDER NAME STOP
//
// Makes one check, of the sample order with this number, and stops at the STOP-th boundary between
// statements: it tells which one that is, and goes on when it is given a line. 0 stops nowhere. The
// last boundary lies behind the check. Whoever started it does to the server what he wants
// meanwhile.

#include "signutils/signutils.h"
#include "tests/soak/boundaries.h"
#include "tests/soak/orders.h"
#include "tests/soak/told.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

void WaitForLine()
{
    for (int letter = std::getchar(); letter != '\n' && letter != EOF; letter = std::getchar())
    {
    }
}

void StopAt(int number, const std::string& what)
{
    soak::TellLine(nlohmann::json{{"boundary", number}, {"what", what}}.dump());
    WaitForLine();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5)
    {
        std::fprintf(stderr, "usage: signutils_boundary_host CONNEXION ORDER NAME STOP\n");
        return 64;
    }
    const soak::Order& order = soak::OrderAt(static_cast<std::size_t>(std::atoll(argv[2])));
    const int stop = std::atoi(argv[4]);
    soak::Told told;
    told.order = argv[3];
    told.expected = order.verdict;
    told.asked = true;

    SignUtils session(nullptr, nullptr);
    soak::SetUp(session, argv[1], order, told.asked);
    session.SetRefRequest(told.order.c_str());
    soak::WatchBoundaries(stop, StopAt);
    told.begun = soak::Microseconds();
    told.verdict = session.CheckSignRules(told.order.c_str(), order.signers);
    told.ended = soak::Microseconds();
    const std::vector<std::string> passed = soak::UnwatchBoundaries();
    soak::Tell(told, session.GetLastCheck());
    if (stop == static_cast<int>(passed.size()) + 1)
    {
        StopAt(stop, "end");
    }
    soak::TellLine(nlohmann::json{{"passed", passed}}.dump());
    return 0;
}
