#pragma once

#include "tests/model/tables.h"

#include <bitset>
#include <cstdint>
#include <string>
#include <vector>

namespace model
{

/// What a scenario came upon; counted, so that no outcome is left untried.
enum class Outcome
{
    Rule1,
    Rule2,
    Rule3,
    Rule4,
    Rule5,
    Rule6,
    Rule7,
    Rule8,
    OppositionOfSecond,
    TotalAboveOneHolder,
    OrderAboveOneHolder,
    TotalAboveTwoHolders,
    OrderAboveTwoHolders,
    ProfileMismatch,
    DoubleRequired,
    SuccessOneHolderTotal,
    SuccessOneHolderOrder,
    SuccessTwoHolders,
    SuccessAllHolders,
    SameCertificate,
    WarnTooManySigners,
    WarnSignerNotFound,
    WarnAlreadyFound,
    WarnSharedCertificate,
    LimitMetExactly,
    LimitPassedByAUnit,
    Fallback,
    LookUpRefused,
    RulesRefused,
    RowLost,
    SecondCheck,
    SettingsChanged,
    RulesAlone,
    OnCopy,
    NoSigner,
    FiveSigners,
    ReportHandedOn,
    ReportNotHandedOn,
    NotConnected,
    AmountsUnknown,
    Count,
};

using Outcomes = std::bitset<static_cast<std::size_t>(Outcome::Count)>;

/// One row of HST_SIGNRULES but for its number and time.
struct HistoryRow
{
    std::int64_t server = 0;
    Text statut;
    Text partner;
    std::int64_t protocol = 0;
    Text service;
    Text client;
    std::int64_t idFileVfs = 0;
    Text orderId;
    std::int64_t controlType = 0;
    Text signer1;
    Text signer2;
    Text motif;
    Text cns;
    double total = 0.0;
    double largest = 0.0;
    Text fileName;
};

/// One entry of the event journal but for its number, key and time.
struct Event
{
    int level = 0;
    NullableText reference;
    Text text;
    Text attachKind;
    Text attachPath;
};

/// Where the events of a check are.
enum class Journal
{
    NotDue,
    Written,
    Spooled,
    Lost,
};

enum class Report
{
    NotDue,
    HandedOn,
    NotHandedOn,
};

/// What one call answers and leaves in its session.
struct Answer
{
    std::uint32_t verdict = 0;
    Text reasonCode;
    Text reasonText;
    Text extraInfo;
    std::string reportDocument; ///< UTF-8, with kTimeOfReport in the place of its time
    // The rest is told by GetLastCheck. Its reasons are those of the check, not what the caller's
    // outputs held before.
    Text toldReasonCode;
    Text toldReasonText;
    bool ran = false;
    bool rulesComplete = false;
    bool lookupsComplete = false;
    bool amountsKnown = false;
    double total = 0.0;
    double largest = 0.0;
    Text currency;
    std::uint32_t rowsDue = 0;
    std::uint32_t rowsWritten = 0;
    std::int32_t orderCount = 0;
    Journal journal = Journal::NotDue;
    Report report = Report::NotDue;
    std::uint32_t reportFileId = 0; ///< given by the hand-off; the model takes it as it comes
};

inline constexpr char kTimeOfReport[] = "(time)";

/// What all scenarios of a world answer and leave behind.
struct Results
{
    std::vector<std::vector<Answer>> answers; ///< of each session's calls
    std::vector<HistoryRow> history;
    std::vector<Event> journal;
    std::vector<std::string> trace;    ///< findings of the traced sessions, "label: value"
    std::vector<std::string> problems; ///< what the real side broke by itself
};

} // namespace model
