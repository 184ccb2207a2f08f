#include "tests/soak/orders.h"

#include "signutils/signutils.h"

#include <iterator>

namespace soak
{

namespace
{

const Order kOrders[] = {
    {"DUPONTSA", "CCT", "TRESOR", L"\u00C9lodie Lef\u00E8vre", 12500.00, 1, 1},
    {"DUPONTSA", "CCT", "TRESOR", L"\u00C9lodie Lef\u00E8vre", 64200.00, 2, 1},
    {"DUPONTSA", "CCT", "TRESOR", L"Paul Martin", 900.00, 0, 1},
    {"MUELLER", "CCT", "KASSE", L"J\u00FCrgen Gro\u00DFmann;K\u00E4the Schr\u00F6der", 80000.00, 1,
     1},
    {"BODENSEE", "CCT", "FINANZ", L"Bj\u00F6rn Wei\u00DF", 20000.00, 2, 2},
};

} // namespace

const Order& OrderAt(std::size_t index)
{
    return kOrders[index % std::size(kOrders)];
}

void SetUp(SignUtils& session, const std::string& connexion, const Order& order, bool asksForReport)
{
    session.SetConnexionString(connexion.c_str());
    session.SetContractInfo(1, 9, order.partner, order.service, order.client, 1, "");
    session.SetAmountInfo(order.total, 1.00, "EUR");
    session.SetMessageInfo("BANKFRPP", "SOAK", "pain.001.001.03", "SOAK");
    if (asksForReport)
    {
        session.SetPSRWarning("STATUS");
    }
}

} // namespace soak
