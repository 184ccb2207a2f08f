#pragma once

// The C interface: every operation of the class SignUtils for hosts that are not built by the
// library's own C++ compiler (C, C#, Delphi, Python). Plain C11, and C++.
//
// Calling convention: SIGNUTILS_CALL, which is the platform's C convention. Numbers have fixed
// widths; truth values are int32_t, 0 or 1. The library has 64-bit builds only.
//
// Texts go both ways as UTF-8 that ends with a NUL. The library keeps identifiers, paths and the
// like in Windows-1252 (each such argument is marked "1252"): a character that has no place there
// is refused, never replaced. A null text is refused, except where it "may be null", which is the
// same as an empty one.
//
// Results: every function but those that release or read an error returns a SignUtilsStatus.
// A call that does not return SIGNUTILS_OK because of its arguments has changed nothing; results
// are then 0, empty texts, and for a verdict SIGNUTILS_REFUSED. SignUtilsErrorText says what was
// wrong: which argument, which limit, what to do. No exception crosses, and no argument ends the
// process.
//
// Ownership: a handle belongs to the host, which gives it back once, to the function that releases
// its kind, and does not use it again: like any pointer it cannot be told from one that is good. A
// text that a function gives out belongs to the handle that the function was called on. It stays
// until the next call on that handle has returned, so it may be an argument of that call; copy what
// must live longer. It is never null.
//
// Threads: one thread at a time for a handle. Different handles may be used by different threads.

#include "signutils/version.h"
#include "support/export.h"

#include <stdint.h>

#if defined(__cplusplus)
extern "C"
{
#endif

    /// One session: a SignUtils object. One for each order file.
    typedef struct SignUtilsSession SignUtilsSession;
    /// A list of signers for SignUtilsGetSignerInfos.
    typedef struct SignUtilsSigners SignUtilsSigners;
    /// An open trace file; the same handle as that of TraceOpen.
    typedef struct SignUtilsTrace SignUtilsTrace;

    /// One of the values below. Later versions may add values: treat an unknown one as a failure.
    typedef int32_t SignUtilsStatus;
    enum
    {
        SIGNUTILS_OK = 0,
        SIGNUTILS_NULL_ARGUMENT = 1,    ///< a handle, text or place for a result is missing
        SIGNUTILS_TEXT_TOO_LONG = 2,    ///< the error text names argument and limit
        SIGNUTILS_NOT_UTF8 = 3,         ///< the error text names argument and byte
        SIGNUTILS_NOT_WINDOWS_1252 = 4, ///< the error text names argument and character
        SIGNUTILS_BAD_ARGUMENT = 5,     ///< a number or the size of a record is out of range
        SIGNUTILS_OUT_OF_MEMORY = 6,    ///< nothing was changed
        SIGNUTILS_FAILED = 7,           ///< the operation was tried; the error text says why not
        SIGNUTILS_OTHER_APARTMENT = 8,  ///< see SignUtilsComInitialize
        SIGNUTILS_UNEXPECTED = 9        ///< a defect of the library; the error text says more
    };

    /// Verdicts. SIGNUTILS_REFUSED stands also for a check that could not be run: SignUtilsCheck
    /// tells which.
    enum
    {
        SIGNUTILS_NO_RULE = 0,
        SIGNUTILS_ACCEPTED = 1,
        SIGNUTILS_REFUSED = 2
    };

    /// What became of the audit event of a check.
    enum
    {
        SIGNUTILS_JOURNAL_NOT_DUE = 0,
        SIGNUTILS_JOURNAL_WRITTEN = 1,
        SIGNUTILS_JOURNAL_SPOOLED = 2, ///< delivered by a later connection to the same database
        SIGNUTILS_JOURNAL_LOST = 3
    };

    /// What became of the status report of a check.
    enum
    {
        SIGNUTILS_REPORT_NOT_DUE = 0,
        SIGNUTILS_REPORT_HANDED_ON = 1,
        SIGNUTILS_REPORT_NOT_HANDED_ON = 2
    };

    // Records. The host sets `size` to the size of the record that it was compiled with before
    // each call; the library fills no more than that and sets `size` to what it filled. Records
    // grow at their end only, so hosts and libraries of different versions understand each other.

    /// The last check of a session.
    typedef struct SignUtilsCheck
    {
        uint32_t size;           ///< of the record, see above
        int32_t ran;             ///< the rules were judged; else the verdict says nothing of them
        int32_t rulesComplete;   ///< all rules of the contract could be read
        int32_t lookupsComplete; ///< every holder look-up could be read
        int32_t amountsKnown;    ///< given as finite numbers, or worked out from the file
        uint32_t verdict;        ///< 0, 1 or 2
        double totalAmount;      ///< in the currency's main unit
        double maxOrderAmount;   ///< the largest order, main unit
        int32_t orderCount;      ///< 0 when the amounts were given
        uint32_t rowsDue;        ///< history rows
        uint32_t rowsWritten;    ///< fewer than due when some were refused
        int32_t journal;         ///< SIGNUTILS_JOURNAL_...
        int32_t report;          ///< SIGNUTILS_REPORT_...
        uint32_t reportFileId;   ///< when handed on
        const char* problem;     ///< the first error met; empty when there was none
        const char* amountsProblem; ///< why the amounts are not known, or errors in the order file
        const char* currency;       ///< of the last remittance, or as given
        const char* reasonCode;     ///< of the first failing rule or of "no rule"
        const char* reasonText;     ///< belongs to the reason code
        const char* reportProblem;  ///< why the report was not handed on
    } SignUtilsCheck;

    /// What a look-up by holder identifier gave.
    typedef struct SignUtilsHolder
    {
        uint32_t size;           ///< of the record, see above
        int32_t found;           ///< a certificate of the holder is one of the signers'
        int32_t notOpposition;   ///< 1: the holder is not blocked
        int32_t reserved;        ///< 0
        const char* certificate; ///< of the last row read, matched or not; cut to 255 characters
        const char* firstName;   ///< of the same row
        const char* lastName;    ///< of the same row
    } SignUtilsHolder;

    /// The amounts of an order file.
    typedef struct SignUtilsAmounts
    {
        uint32_t size;         ///< of the record, see above
        int32_t orderCount;    ///< orders in the file
        double totalAmount;    ///< in the currency's main unit
        double maxOrderAmount; ///< the largest order, main unit
        const char* currency;  ///< of the last remittance
        const char* errors;    ///< errors that the conversion found in the file; empty: none
    } SignUtilsAmounts;

    /// What became of a report that was handed on.
    typedef struct SignUtilsHandOff
    {
        uint32_t size;       ///< of the record, see above
        uint32_t result;     ///< 0, or 0x00C90004: not handed on
        uint32_t fileId;     ///< the hand-off service's identifier
        uint32_t errorCode;  ///< the service's own code, 0 when it has none
        uint32_t systemCode; ///< the system's error, 0 when it has no part in it
        uint32_t reserved;   ///< 0
    } SignUtilsHandOff;

    // Errors

    /// Why the last call on this session failed; empty when it did not. With null: the last call
    /// of this thread that had no session. Stays until the next such call; cut to 1023 bytes.
    SIGNUTILS_API const char* SIGNUTILS_CALL SignUtilsErrorText(const SignUtilsSession* session);

    // The process: COM, trace, protocols

    /// Initialises COM on the calling thread, which amounts from the order file need. `apartment`
    /// is SIGNUTILS_COM_MULTITHREADED, for threads without a message loop, or
    /// SIGNUTILS_COM_SINGLE_THREADED. Each SIGNUTILS_OK needs a SignUtilsComUninitialize on the
    /// same thread. SIGNUTILS_OTHER_APARTMENT: the thread has COM already, of the other kind; it
    /// can be used as it is, and this call needs no counterpart.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsComInitialize(int32_t apartment);
    SIGNUTILS_API void SIGNUTILS_CALL SignUtilsComUninitialize(void); ///< on the same thread
    enum
    {
        SIGNUTILS_COM_MULTITHREADED = 0,
        SIGNUTILS_COM_SINGLE_THREADED = 1
    };

    /// Opens a trace file for appending; `path` is 1252. Several sessions and threads may share
    /// it. Close it behind the last session that has it.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsTraceOpen(const char* path,
                                                                    SignUtilsTrace** trace);
    /// Null is ignored.
    SIGNUTILS_API void SIGNUTILS_CALL SignUtilsTraceClose(SignUtilsTrace* trace);

    /// Adds or renames a protocol for the whole process. `longName` is 1252, at most 63 characters;
    /// null or empty: takes the host's own entry away again.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsRegisterProtocol(uint32_t protocol,
                                                                           const char* longName);
    /// The long name of a protocol; empty for a number that is not known. The session owns the
    /// text and has no other part in it.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetProtocolName(SignUtilsSession* session,
                                                                          uint32_t protocol,
                                                                          const char** longName);
    /// Number and name of the protocols known, in rising order from index 0; `*found` is 0 past
    /// the last.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetProtocolAt(SignUtilsSession* session,
                                                                        int32_t index,
                                                                        int32_t* found,
                                                                        uint32_t* protocol,
                                                                        const char** longName);

    // Measures of the process, for operations; docs/metrics.md has their names. Any thread.

    /// From now on checks, conversions and statements are counted and timed. There is no way back;
    /// another call changes nothing.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsStartMeasures(void);
    /// Writes them in the text format that Prometheus reads; `path` is 1252. Every user may read
    /// the file, and finds the text of before or this one, whole. SIGNUTILS_FAILED: it is as it
    /// was, and the error text says why.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsWriteMeasures(const char* path);

    // Life of a session

    /// Makes a session. `trace` may be null. `logFile` (1252, at most 259 characters, may be null)
    /// is attached to audit events.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsCreate(SignUtilsTrace* trace,
                                                                 const char* logFile,
                                                                 SignUtilsSession** session);
    /// Makes a copy. It shares the signer list, and the journal client and database connection
    /// that exist at this moment; use both on one thread. Any order of destruction is safe.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsCopy(SignUtilsSession* session,
                                                               SignUtilsSession** copy);
    /// Makes `session` a copy of `source`; the same session twice changes nothing.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsAssign(SignUtilsSession* session,
                                                                 const SignUtilsSession* source);
    /// Null is ignored.
    SIGNUTILS_API void SIGNUTILS_CALL SignUtilsDestroy(SignUtilsSession* session);

    // Settings, in any order before the check

    /// `partner`, `service` and `client`: 1252, at most 8 characters. `serverMode` not 0: the
    /// bank's side. `handOffTarget`: 1252, at most 260 characters; may be null (the default store).
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetContractInfo(
        SignUtilsSession* session, uint32_t contractType, uint32_t protocol, const char* partner,
        const char* service, const char* client, int32_t serverMode, const char* handOffTarget);
    /// Amounts are worked out from the order file; the later call of this and
    /// SignUtilsSetAmountInfo decides. 1252; `format3` may be null.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetFormatInfo(SignUtilsSession* session,
                                                                        const char* format1,
                                                                        const char* format2,
                                                                        const char* format3);
    /// Amounts in the currency's main unit. `currency`: 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetAmountInfo(SignUtilsSession* session,
                                                                        double totalAmount,
                                                                        double maxOrderAmount,
                                                                        const char* currency);
    /// 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL
    SignUtilsSetMessageInfo(SignUtilsSession* session, const char* initiatingParty,
                            const char* orgnlMsgId, const char* orgnlMsgNmId, const char* msgId);
    /// The service that status reports are handed on under: 1252, at most 8 characters; empty: no
    /// report is made.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetPSRWarning(SignUtilsSession* session,
                                                                        const char* psrService);
    /// ODBC connection string of the rules' database and of the journal; 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL
    SignUtilsSetConnexionString(SignUtilsSession* session, const char* connexionString);
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL
    SignUtilsSetIdFileVfs(SignUtilsSession* session,
                          uint32_t idFileVfs); ///< enters events
    /// Distributed signatures; there is no way back but a new session.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetModeVeu(SignUtilsSession* session);
    /// Reference of the host's request, for the journal; 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSetRefRequest(SignUtilsSession* session,
                                                                        const char* refRequest);

    // Checks

    /// Judges one order file. `fileName`: 1252. `signers`: certificate names separated by ';', any
    /// characters. SIGNUTILS_OK says that the call was carried out, not that the check ran or that
    /// its amounts are known: SignUtilsGetLastCheck does.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsCheckSignRules(SignUtilsSession* session,
                                                                         const char* fileName,
                                                                         const char* signers,
                                                                         uint32_t* verdict);
    /// The rules alone, on given amounts. `fileName`: 1252; `currency`: 1252, may be null.
    /// `reasonCode` and `reasonText` are empty when the rules gave none.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL
    SignUtilsCheckSignRulesFor(SignUtilsSession* session, const char* signers, const char* fileName,
                               double totalAmount, double maxOrderAmount, const char* currency,
                               uint32_t* verdict, const char** reasonCode, const char** reasonText);
    /// What became of the last check, however it ended.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetLastCheck(SignUtilsSession* session,
                                                                       SignUtilsCheck* check);
    /// "PSR Generated in <service>=<file identifier>" once a check handed a report on.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetExtraInfo(SignUtilsSession* session,
                                                                       const char** extraInfo);
    /// The status report that a check wrote last (not the service that SignUtilsSetPSRWarning was
    /// given); empty before.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetPSRWarning(SignUtilsSession* session,
                                                                        const char** report);

    // Holders. Look-ups use the connection of a check: before one, and when the database cannot be
    // read, nothing is found.

    /// Who holds a certificate. Names are cut to 255 characters, and empty when nobody is found.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL
    SignUtilsGetSignerNames(SignUtilsSession* session, const char* certificateName, int32_t* found,
                            const char** firstName, const char** lastName);
    /// Whether a holder has one of the signers' certificates. `holderId`: 1252. Entries that match
    /// receive the holder's names.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetSignerInfos(SignUtilsSession* session,
                                                                         const char* holderId,
                                                                         SignUtilsSigners* signers,
                                                                         SignUtilsHolder* holder);

    /// Makes an empty list of signers. The calls below leave their errors with the thread.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersCreate(SignUtilsSigners** signers);
    /// Null is ignored.
    SIGNUTILS_API void SIGNUTILS_CALL SignUtilsSignersDestroy(SignUtilsSigners* signers);
    /// Appends a signer that is not matched yet.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersAdd(SignUtilsSigners* signers,
                                                                     const char* certificate);
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersCount(SignUtilsSigners* signers,
                                                                       int32_t* count); ///< of all
    /// Signer number `index`, from 0; the names are empty until a look-up matched it.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsSignersGet(SignUtilsSigners* signers,
                                                                     int32_t index,
                                                                     const char** certificate,
                                                                     const char** firstName,
                                                                     const char** lastName);

    // Amounts from the order file. The thread must have COM, and the formats must be set.

    /// Runs the format conversion, which leaves its work files beside the order file. `fileName`:
    /// 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsExecWorkFmt(SignUtilsSession* session,
                                                                      const char* fileName);
    /// Total, largest order and count; the work files are removed again. `fileName`: 1252.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGetMaxAmountFile(
        SignUtilsSession* session, const char* fileName, SignUtilsAmounts* amounts);

    // Reports and events

    /// Writes a pain.002.001.02 document, in UTF-8 as it declares. Texts: 1252, entered as they
    /// stand, so a host escapes what XML reserves; `reasonCode` and `reasonInfo` may be null.
    /// `received` 0: rejected. `nbOfTxs` 0 or `ctrlSum` -1.0: both unknown.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsGeneratePSR(
        SignUtilsSession* session, const char* initiatingParty, const char* orgnlMsgId,
        const char* orgnlMsgNmId, const char* msgId, int32_t received, const char* reasonCode,
        const char* reasonInfo, int32_t nbOfTxs, double ctrlSum, const char** report);
    /// Files a report for the partner, byte for byte. `extension` without its point, `service` and
    /// `partner` (at most 8 characters each), `target`: 1252; `target` may be null (the default
    /// store). SIGNUTILS_FAILED: not handed on; the record and the error text say why.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsAddPaymentStatusReport(
        SignUtilsSession* session, const char* report, const char* extension, const char* service,
        const char* partner, const char* target, SignUtilsHandOff* handOff);
    /// Journals or spools one audit event: level 0 information, 1 error, 2 refusal.
    SIGNUTILS_API SignUtilsStatus SIGNUTILS_CALL SignUtilsLogEvent(SignUtilsSession* session,
                                                                   uint16_t level,
                                                                   const char* message);

#if defined(__cplusplus)
}
#endif
