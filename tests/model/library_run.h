#pragma once

#include "tests/model/expected.h"
#include "tests/model/real_bank.h"
#include "tests/model/scenario.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class SignUtils;

namespace model
{

/// What the library answered and left behind.
struct Seen
{
    Results results;
    std::vector<std::uint32_t> reportFileIds; ///< of the reports handed on, in their order
};

/// Gives an object all settings of a session.
void Prepare(SignUtils& object, const Session& session, const std::string& connexionString);

/// What stands between the library and a real database that works.
struct Surroundings
{
    std::string connexionString; ///< in the place of the bank's own, unless empty
    bool eventsMayWait = false;  ///< events are delivered from the spool at the end
    std::function<void()> beforeCall;
    std::function<void(const SignUtils& object)> afterCall;
};

/// Runs a world's sessions through the public class, on a real database through ODBC.
Seen RunLibrary(RealBank& bank, const World& world, const Surroundings& surroundings = {});

} // namespace model
