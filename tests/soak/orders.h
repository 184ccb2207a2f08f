#pragma once

#include <cstddef>
#include <string>

class SignUtils;

namespace soak
{

/// One order of the sample bank and what a whole check of it comes to.
struct Order
{
    const char* partner;
    const char* service;
    const char* client;
    const wchar_t* signers;
    double total; ///< euros
    unsigned long verdict;
    unsigned int rows;
};

/// The orders in turn, without end: acceptances, refusals and one that no rule concerns.
const Order& OrderAt(std::size_t index);

/// Gives a session everything that a check of the order needs. Refusals are answered with a report
/// when one is asked for.
void SetUp(SignUtils& session, const std::string& connexion, const Order& order,
           bool asksForReport);

} // namespace soak
