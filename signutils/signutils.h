#pragma once

#include "containers/shared_ref.h"
#include "containers/tarray.h"
#include "services/tag_rc.h"
#include "signers/signer_info.h"
#include "signutils/check_outcome.h"
#include "signutils/version.h"
#include "support/export.h"
#include "support/protocol_catalogue.h"
#include "support/trace.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

class CDatabase;
class CEvents;

namespace signutils
{
class AuditTrail;
class CheckRun;
} // namespace signutils

/// Judges the signatures of one order file against the contract's rules. One object per order
/// file, used by one thread at a time. Narrow texts are Windows-1252.
///
/// Copies share the signer array, and the journal client and database connection that exist at the
/// moment of copying; what either creates later is its own. Any order of destruction is safe.
class SIGNUTILS_API SignUtils
{
public:
    SignUtils();
    /// `trace` from TraceOpen, or null; `logFile` is attached to audit events, may be null.
    SignUtils(void* trace, const char* logFile);
    SignUtils(const SignUtils& other);            ///< shares what the class says
    SignUtils& operator=(const SignUtils& other); ///< lets go of its own
    ~SignUtils();

    // Setters in any order before CheckSignRules. They validate nothing and return 1. A text that
    // does not fit its field (see each) and a null text leave the field empty and call the
    // invalid-parameter handler, which ends the process unless the host installed one.

    /// Partner, service and client: at most 8 characters each; handOffTarget: at most 260.
    /// `serverMode` non-zero: the bank-server side.
    int SetContractInfo(unsigned long contractType, unsigned long protocol, const char* partner,
                        const char* service, const char* client, int serverMode,
                        const char* handOffTarget);
    /// Amounts are worked out from the file; the later call of this and SetAmountInfo decides.
    int SetFormatInfo(const char* format1, const char* format2, const char* format3);
    /// Amounts in the currency's main unit.
    int SetAmountInfo(double totalAmount, double maxOrderAmount, const char* currency);
    int SetMessageInfo(const char* initiatingParty, const char* orgnlMsgId,
                       const char* orgnlMsgNmId, const char* msgId); ///< for reports
    /// Service for status reports, at most 8 characters; empty: no report.
    int SetPSRWarning(const char* psrService);
    /// ODBC connection string of the rules' database and of the journal.
    void SetConnexionString(const char* connexionString);
    void
    SetIdFileVfs(unsigned long idFileVfs); ///< the file in the host's store, for the audit event
    /// Distributed signatures; there is no way back but a new object.
    void SetModeVeu();
    void SetRefRequest(const char* refRequest); ///< the host's own reference, for the audit event

    /// "PSR Generated in <service>=<file identifier>" once a report was handed on.
    TSimpleString GetExtraInfo() const;
    /// The status report last written, not the service that SetPSRWarning was given.
    TSimpleString GetPSRWarning() const;
    /// What became of the last check.
    const CheckOutcome& GetLastCheck() const;

    /// Judges one order file: 0 no rule concerns the signers, 1 success, 2 refused or not run
    /// (GetLastCheck tells which). `signers`: certificate names separated by ';'.
    unsigned long CheckSignRules(const char* fileName, const wchar_t* signers);

    /// The rules alone, on given amounts. `reasonCode` and `reasonText` are written by the first
    /// failing rule or when no rule concerns the signers. `currency` is not used.
    unsigned long CheckSignRulesFor(TSimpleString& reasonCode, TSimpleStringW& reasonText,
                                    const wchar_t* signers, const char* fileName,
                                    double totalAmount, double maxOrderAmount,
                                    const char* currency);

    /// Who holds a certificate; the buffers hold 256 characters each. 1 found, 0 not, also before
    /// a check has opened the connection.
    int GetSignerNames(wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName);
    /// Whether a holder has one of the signers' certificates; entries that match and have no name
    /// yet receive his. Outputs are those of the last row read, `notOpposition` 1: not blocked.
    /// 1 when an entry was completed, else 0.
    int GetSignerInfos(const char* holderId, int& notOpposition, wchar_t* certificateName,
                       wchar_t* firstName, wchar_t* lastName, TArray<signerInfo>* signers);

    /// Runs the format conversion on the order file; `errorText` (256 characters, may be null)
    /// receives the error. 1 on success.
    int ExecWorkFmt(const char* fileName, char* errorText);
    /// Total, largest order and count of the order file; `currencyCode` (4 characters) may be
    /// null. 0 when the conversion failed.
    int GetMaxAmountFile(const char* fileName, double& totalAmount, double& maxOrderAmount,
                         int& orderCount, char* currencyCode, char* errorText);

    /// Writes a pain.002.001.02 document. Always 1.
    int GeneratePSR(TSimpleString& report, const char* initiatingParty, const char* orgnlMsgId,
                    const char* orgnlMsgNmId, const char* msgId, int received,
                    const char* reasonCode, const char* reasonInfo, int nbOfTxs, double ctrlSum);
    /// Files a report for the partner. 0, or 0x00C90004 with `rc` filled.
    unsigned long AddPaymentStatusReport(TSimpleString& report, const char* extension,
                                         const char* service, const char* partner,
                                         const char* target, tag_Rc& rc, unsigned long* fileId);

    /// Journals one audit event: level 0 information, 1 error, 2 refusal.
    void LogEvent(unsigned short level, const wchar_t* message);

private:
    friend class signutils::AuditTrail;
    friend class signutils::CheckRun;

    SharedRef<TArray<signerInfo>> m_signers;
    unsigned int m_modeVeu;
    int m_serverMode;
    unsigned int m_idFileVfs;
    unsigned int m_contractType;
    unsigned int m_protocol;
    char m_protocolName[64];
    char m_partner[9];
    char m_service[9];
    char m_client[9];
    char m_handOffTarget[261];
    char m_psrService[9];
    unsigned int m_amountFromFile;
    double m_totalAmount;
    double m_maxOrderAmount;
    TSimpleString m_currency;
    TSimpleString m_format1;
    TSimpleString m_format2;
    TSimpleString m_format3;
    TSimpleString m_initiatingParty;
    TSimpleString m_orgnlMsgId;
    TSimpleString m_orgnlMsgNmId;
    TSimpleString m_msgId;
    TSimpleString m_psrText;
    TSimpleString m_connexionString;
    TSimpleString m_extraInfo;
    TSimpleString m_refRequest;
    TSimpleString m_logFile;
    void* m_trace;
    SharedRef<CEvents> m_events;
    SharedRef<CDatabase> m_database;
    CheckOutcome m_lastCheck;
};
