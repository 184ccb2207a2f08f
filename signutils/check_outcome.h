#pragma once

#include "support/export.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

/// What became of the audit event of a check.
enum class JournalState
{
    NotDue,
    Written,
    Spooled,
    Lost,
};

/// What became of the status report of a check.
enum class ReportState
{
    NotDue,
    HandedOn,
    NotHandedOn,
};

/// The last check of a session, for hosts that must tell a refusal from a check that could not be
/// run. Reset when a check starts and true however it ends, by an exception too; nothing else in
/// the library reads it. A text is empty, too, where there was no memory to keep it.
struct SIGNUTILS_API CheckOutcome
{
    bool ran = false;           ///< the rules were judged; else the verdict 2 says nothing of them
    bool rulesComplete = false; ///< all rules of the contract could be read
    bool lookupsComplete = false; ///< every holder look-up could be read
    bool amountsKnown = false; ///< given by the host as finite numbers, or worked out from the file
    unsigned int verdict = 0;  ///< 2 when an exception ended the check before its verdict
    TSimpleString problem;     ///< the first error met, Windows-1252; empty when there was none
    TSimpleString amountsProblem; ///< why the amounts are not known, or errors in the order file
    double totalAmount = 0.0;     ///< main unit
    double maxOrderAmount = 0.0;  ///< the largest order, main unit
    int orderCount = 0;           ///< 0 when the amounts were given
    TSimpleString currency;       ///< of the last remittance, or as given
    TSimpleString reasonCode;     ///< of the first failing rule or of "no rule"
    TSimpleStringW reasonText;    ///< belongs to the reason code
    unsigned int rowsDue = 0;     ///< history rows
    unsigned int rowsWritten = 0; ///< fewer than due when the database refused some
    JournalState journal = JournalState::NotDue; ///< of the audit event
    ReportState report = ReportState::NotDue;    ///< of the status report
    TSimpleString reportProblem;    ///< why the report was not handed on, one line, Windows-1252
    unsigned long reportFileId = 0; ///< the hand-off service's identifier, when handed on
};
