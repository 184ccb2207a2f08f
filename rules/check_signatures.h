#pragma once

#include "containers/shared_ref.h"
#include "containers/tarray.h"
#include "signers/signer_info.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

#include <cstdint>

class CDatabase;

namespace rules
{

inline constexpr std::uint32_t kVerdictNoRule = 0;
inline constexpr std::uint32_t kVerdictSuccess = 1;
inline constexpr std::uint32_t kVerdictFailed = 2;

/// The contract that an order falls under. Texts are Windows-1252 and borrowed for the call.
struct ContractKey
{
    std::uint32_t contractType; ///< column TYPE
    std::uint32_t protocol;
    const char* protocolName; ///< display only
    const char* partner;
    const char* service;
    const char* client;
    bool serverMode; ///< bank-server side
    bool veu;        ///< distributed signatures, arriving one by one
};

/// The order file as the rules see it; amounts in the currency's main unit.
struct OrderFacts
{
    const char* fileName;
    const char* orderId;
    std::uint32_t idFileVfs;
    double totalAmount;
    double maxOrderAmount;
};

/// Receives the one audit event of a check.
class AuditJournal
{
public:
    virtual ~AuditJournal() = default;
    virtual void LogEvent(unsigned short level, const wchar_t* message) = 0;
};

/// What became of one check beside its verdict.
struct CheckTrail
{
    bool ran = false;             ///< the rules were judged
    bool rulesComplete = false;   ///< all rules of the contract could be read
    bool lookupsComplete = false; ///< every holder look-up of the rules could be read
    TSimpleString problem;        ///< the first error met, empty when there was none
    std::uint32_t rowsDue = 0;    ///< history rows that the check owes
    std::uint32_t rowsWritten = 0;
};

/// Everything that one check needs.
struct CheckInput
{
    ContractKey contract;
    OrderFacts order;
    const wchar_t* signers; ///< certificate names separated by ';'; null counts as empty
    const char* connexionString;
    void* trace;
    TArray<signerInfo>& sessionSigners;    ///< appended to, never emptied
    SharedRef<CDatabase>& sessionDatabase; ///< opened on first use, let go when opening fails
    AuditJournal& journal;
};

/// Judges the signers by the contract's rules, records the decisions in HST_SIGNRULES and journals
/// one event. Returns the verdict. `reasonCode` and `reasonText` are written by the first failing
/// rule or when no rule concerns the signers, and stay as they are otherwise.
std::uint32_t CheckSignatures(const CheckInput& input, TSimpleString& reasonCode,
                              TSimpleStringW& reasonText, CheckTrail& trail);

} // namespace rules
