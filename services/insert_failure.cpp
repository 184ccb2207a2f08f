#include "services/insert_failure.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace services
{

namespace
{

constexpr std::string_view kDataState = "22";
constexpr std::string_view kIntegrityState = "23";
constexpr std::string_view kConnectionState = "08";
constexpr std::string_view kTimeOutState = "HYT";
// PostgreSQL's driver passes on why the server ended the session: an administrator, a shutdown, its
// time-out for idle sessions.
constexpr std::string_view kInterventionState = "57P";

// SQLite's driver has one state for everything.
constexpr std::string_view kGeneralState = "HY000";
constexpr std::int32_t kSqliteConstraint = 19;

// MariaDB's driver gives some losses no state of their own: a server that ended an idle session is
// a write error. No other product's driver has these numbers.
constexpr std::int32_t kMariaDbLosses[] = {
    2006, // the server has gone away
    2013, // lost during a query
    5013, // read error
    5014, // write error
};

constexpr std::string_view kKeyColumn = "EVENTKEY";

bool StateBegins(const CDBException& raised, std::string_view start)
{
    return std::string_view(raised.GetState()).substr(0, start.size()) == start;
}

char UpperAscii(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view wanted)
{
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                       [](char left, char right)
                       { return UpperAscii(left) == UpperAscii(right); }) != text.end();
}

bool IsIntegrityViolation(const CDBException& raised)
{
    return StateBegins(raised, kIntegrityState) ||
           (StateBegins(raised, kGeneralState) && raised.GetNativeError() == kSqliteConstraint);
}

/// The key column or the key itself must be named: after a restore EVENTID may collide as well, and
/// such an event is not there.
bool IsKeyThereAlready(const CDBException& raised, const std::string& key)
{
    const char* const text = raised.GetFirstText().SafeGetString();
    return IsIntegrityViolation(raised) &&
           (ContainsIgnoringCase(text, kKeyColumn) || ContainsIgnoringCase(text, key));
}

} // namespace

Delivery JudgeFailedInsert(const CDBException& raised, const std::string& key)
{
    if (IsKeyThereAlready(raised, key))
    {
        return Delivery::Delivered;
    }
    const bool ofThisEvent =
        StateBegins(raised, kDataState) || StateBegins(raised, kIntegrityState);
    return ofThisEvent ? Delivery::Refused : Delivery::Stopped;
}

bool IsConnectionLost(const CDBException& raised)
{
    return StateBegins(raised, kConnectionState) || StateBegins(raised, kTimeOutState) ||
           StateBegins(raised, kInterventionState) ||
           (StateBegins(raised, kGeneralState) &&
            std::find(std::begin(kMariaDbLosses), std::end(kMariaDbLosses),
                      raised.GetNativeError()) != std::end(kMariaDbLosses));
}

} // namespace services
