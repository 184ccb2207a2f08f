#include "signutils/signutils.h"

#include "containers/shared_ref_impl.h"
#include "database/cdatabase.h"
#include "services/cevents.h"

namespace
{

constexpr int kSignerGrowBy = 128;

} // namespace

SignUtils::SignUtils() : SignUtils(nullptr, nullptr) {}

SignUtils::SignUtils(void* trace, const char* logFile)
    : m_modeVeu(0), m_serverMode(0), m_idFileVfs(0), m_contractType(0), m_protocol(0),
      m_protocolName{}, m_partner{}, m_service{}, m_client{}, m_handOffTarget{}, m_psrService{},
      m_amountFromFile(0), m_totalAmount(0.0), m_maxOrderAmount(0.0), m_logFile(logFile),
      m_trace(trace)
{
    m_signers.Emplace(kSignerGrowBy);
}

SignUtils::SignUtils(const SignUtils& other) = default;

SignUtils& SignUtils::operator=(const SignUtils& other) = default;

SignUtils::~SignUtils()
{
    // The journal client goes before the rules' connection, whatever the order of the members.
    m_events.Reset();
    m_database.Reset();
}
