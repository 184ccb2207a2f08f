#pragma once

#include "tests/model/tables.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace model
{

struct GivenAmounts
{
    double total = 0.0;
    double largest = 0.0;
    Text currency;
};

/// One call of a session. Texts that the library takes as narrow ones hold characters of
/// Windows-1252 only.
struct Call
{
    Text fileName;
    Text signers;
    bool rulesAlone = false; ///< CheckSignRulesFor
    bool onCopy = false;     ///< called on a copy of the session, destroyed behind the call
    /// Set on the session before the call, so for those behind it too; those of CheckSignRulesFor,
    /// which has the session's where there are none, are its own.
    std::optional<GivenAmounts> amounts;
    bool distributedFromNow = false; ///< SetModeVeu before the call
    Text reasonCodeBefore;           ///< what the caller's outputs hold, rulesAlone only
    Text reasonTextBefore;
};

/// One session object with its settings and its calls: one scenario.
struct Session
{
    bool connected = true; ///< a connection string is set
    bool traced = false;
    std::uint64_t contractType = 1;
    std::uint64_t protocol = 9;
    Text partner;
    Text service;
    Text client;
    int serverMode = 1;
    bool amountsFromFile = false; ///< of a format that no engine knows, so they are never known
    double total = 0.0;
    double largest = 0.0;
    Text currency;
    Text psrService;
    bool veu = false;
    std::uint64_t idFileVfs = 0;
    Text initiatingParty;
    Text orderId;
    Text messageName;
    Text messageId;
    Text refRequest;
    Text logFile;
    std::vector<Call> calls;
};

/// One database and the scenarios that are run on it, one after the other.
struct World
{
    Tables tables;
    bool journalMissing = false; ///< the journal's table is away while the sessions run
    std::vector<Session> sessions;
};

} // namespace model
