#include "host/scratch/judge.h"

#include "host/file_text.h"
#include "host/refusal.h"
#include "host/scratch/own_trace.h"
#include "host/text.h"
#include "signutils/signutils.h"
#include "support/codepage.h"
#include "support/trace.h"

#include <algorithm>
#include <string_view>

namespace scratch
{

namespace
{

constexpr std::size_t kIdentifierLength = 8;
constexpr const char* kFileName = "signcheck";

std::string Identifier(const std::string& utf8, const char* what)
{
    std::string narrow;
    if (!support::TryNarrowFromWide(support::WideFromUtf8(utf8), narrow) ||
        narrow.size() > kIdentifierLength || narrow.find('\'') != std::string::npos)
    {
        throw host::Refusal(host::kFindings,
                            std::string("the contract's ") + what + " " + host::Quoted(utf8) +
                                " is none that a check can name: at most 8 characters of "
                                "Windows-1252 and no apostrophe. Correct it in the database.");
    }
    return narrow;
}

std::wstring Joined(const std::vector<std::string>& signers)
{
    std::wstring list;
    for (const std::string& signer : signers)
    {
        list += (list.empty() ? L"" : L";") + support::WideFromUtf8(signer);
    }
    return list;
}

// Other names may be refused where the real order's would be, too: a text that would leave its
// literal, a letter that the driver cannot carry.
bool IsOrdinary(const std::string& signer)
{
    constexpr std::string_view kOrdinary = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                           "0123456789 .-_";
    return signer.find_first_not_of(kOrdinary) == std::string::npos;
}

/// Whether what could not be read would change the answer without a word.
bool IsCutShort(const CheckOutcome& outcome, const std::vector<std::string>& signers)
{
    return !outcome.ran || !outcome.rulesComplete ||
           (!outcome.lookupsComplete && std::all_of(signers.begin(), signers.end(), IsOrdinary));
}

/// A trace file for one check, removed at the end of the scope.
class TraceText
{
public:
    TraceText() : m_trace(m_file.Path().empty() ? nullptr : TraceOpen(m_file.Path().c_str()))
    {
        if (!TraceIsUsable(m_trace))
        {
            throw host::Refusal(host::kCouldNotRun, OwnTrace::Failure());
        }
    }
    ~TraceText() { TraceClose(m_trace); }
    TraceText(const TraceText&) = delete;
    TraceText& operator=(const TraceText&) = delete;

    void* Handle() const noexcept { return m_trace; }

    /// What was written. Nothing can be traced any more.
    std::string Take()
    {
        TraceClose(m_trace);
        m_trace = nullptr;
        return host::FileText(m_file.Path()).value_or(std::string());
    }

private:
    OwnTrace m_file;
    void* m_trace;
};

} // namespace

Judge::Judge(const Copy& copy, const OrderKind& kind)
    : m_copy(copy), m_partner(Identifier(kind.contract.vpname, "partner")),
      m_service(Identifier(kind.contract.vfname, "service")),
      m_client(Identifier(kind.contract.vcname, "client")),
      m_protocol(static_cast<std::uint32_t>(kind.contract.protocol)),
      m_type(static_cast<std::uint32_t>(kind.type)), m_isServer(kind.contract.server != 0)
{
}

Decision Judge::Ask(const Order& order)
{
    return Run(order, nullptr);
}

Decision Judge::AskTraced(const Order& order, std::string& trace)
{
    TraceText text;
    const Decision decision = Run(order, text.Handle());
    trace = text.Take();
    return decision;
}

Decision Judge::Run(const Order& order, void* trace)
{
    Interruption::Check();
    ++m_count;
    SignUtils session(trace, nullptr);
    session.SetConnexionString(m_copy.Where().text.c_str());
    session.SetContractInfo(m_type, m_protocol, m_partner.c_str(), m_service.c_str(),
                            m_client.c_str(), m_isServer ? 1 : 0, "");
    session.SetAmountInfo(order.total, order.largest, "");
    if (order.isDistributed)
    {
        session.SetModeVeu();
    }
    const unsigned long verdict = session.CheckSignRules(kFileName, Joined(order.signers).c_str());
    const CheckOutcome& outcome = session.GetLastCheck();
    if (IsCutShort(outcome, order.signers))
    {
        throw host::Refusal(
            host::kCouldNotRun,
            "the library could not judge on the copy of the rules: " +
                host::Printable(support::Utf8FromNarrow(outcome.problem.SafeGetString())) +
                ". Check the disk and the user's rights where the copy lies.");
    }
    Decision decision;
    decision.verdict = static_cast<unsigned int>(verdict);
    decision.reasonCode = support::Utf8FromNarrow(outcome.reasonCode.SafeGetString());
    decision.reasonText = support::Utf8FromWide(outcome.reasonText.SafeGetString());
    return decision;
}

} // namespace scratch
