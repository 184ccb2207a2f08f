#include "host/batch/history_reader.h"

#include "host/amount_columns.h"
#include "host/check_request.h"
#include "host/query.h"
#include "host/refusal.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace batch
{

namespace
{

std::string Trimmed(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// What the history keeps of an order identifier and of a list of signers.
constexpr std::size_t kSignersKept = 2048;

const std::vector<std::string> kHistoryColumns = {"SERVER", "STATUT", "VPNAME",   "TYPE_PTC",
                                                  "VFNAME", "VCNAME", "ORDERID",  "MOTIF",
                                                  "CNS",    "TOTAL",  "MAXORDER", "FILENAME"};

double AmountIn(const host::QueryRow& row, const char* column)
{
    return support::ToDouble(row.at(column).c_str());
}

// The row has six decimals, and databases do not all read a literal to the last bit.
bool IsSameAmount(double recorded, double given)
{
    constexpr double kDecimals = 1e-6;
    constexpr double kDigits = 2 * std::numeric_limits<double>::epsilon();
    return std::abs(recorded - given) <= std::max(kDecimals, kDigits * std::abs(given));
}

// Products may compare without case, so the rows are compared here once more.
bool IsOn(const host::CheckRequest& request, const host::QueryRow& row)
{
    const auto isText = [&row](const char* column, const std::string& utf8)
    { return Trimmed(row.at(column)) == Trimmed(utf8); };
    const auto isNarrow = [&isText](const char* column, const std::string& narrow)
    { return isText(column, support::Utf8FromNarrow(narrow)); };
    const bool isContract =
        isNarrow("VPNAME", request.partner) && isNarrow("VFNAME", request.service) &&
        isNarrow("VCNAME", request.client) && host::NumberIn(row, "TYPE_PTC") == request.protocol &&
        host::NumberIn(row, "SERVER") == (request.isRequester ? 0 : 1);
    const bool isOrder =
        isText("FILENAME", request.fileShown) &&
        isNarrow("ORDERID", request.orderId.substr(0, host::kOrderIdKept)) &&
        isText("CNS", support::Utf8FromWide(request.signers.substr(0, kSignersKept).c_str()));
    const bool isAmount =
        request.amountsFromFile || (IsSameAmount(AmountIn(row, "TOTAL"), request.total) &&
                                    IsSameAmount(AmountIn(row, "MAXORDER"), request.largest));
    return isContract && isOrder && isAmount;
}

} // namespace

HistoryReader::HistoryReader(const host::Connection& connection) : m_connection(connection) {}

void HistoryReader::Open()
{
    auto database = std::make_unique<CDatabase>();
    host::OpenRulesDatabase(*database, m_connection);
    m_database = std::move(database);
}

long long HistoryReader::Newest()
{
    const auto ask = [this]
    {
        long long newest = 0;
        host::ForEachRow(*m_database, m_connection,
                         "SELECT MAX(ROWNO) AS NEWEST FROM HST_SIGNRULES", {"NEWEST"},
                         [&newest](const host::QueryRow& row)
                         {
                             newest = support::ToInt64(row.at("NEWEST").c_str());
                             return false;
                         });
        return newest;
    };
    if (m_database)
    {
        try
        {
            return ask();
        }
        catch (const host::Refusal&)
        {
            m_database.reset(); // the connection may be lost, the database need not be
        }
    }
    Open();
    try
    {
        return ask();
    }
    catch (const host::Refusal&)
    {
        m_database.reset();
        throw host::Refusal(
            host::kCouldNotRun,
            m_connection.origin +
                ": the table HST_SIGNRULES cannot be read, by which an interrupted run tells what "
                "was judged. Let this user read it (GRANT SELECT ON HST_SIGNRULES).");
    }
}

std::optional<RecordedDecision> HistoryReader::DecisionOn(const host::CheckRequest& request,
                                                          long long after)
{
    host::Conditions conditions;
    conditions.GreaterNumber("ROWNO", after);
    conditions.Equal("FILENAME", request.fileShown);
    std::optional<RecordedDecision> decision;
    host::ForEachRow(*m_database, m_connection,
                     "SELECT " + host::SelectedColumns(*m_database, kHistoryColumns) +
                         " FROM HST_SIGNRULES" + conditions.Clause() + " ORDER BY ROWNO",
                     kHistoryColumns,
                     [&](const host::QueryRow& row)
                     {
                         if (!IsOn(request, row))
                         {
                             return true;
                         }
                         decision = {static_cast<unsigned int>(host::NumberIn(row, "STATUT")),
                                     Trimmed(row.at("MOTIF")), AmountIn(row, "TOTAL"),
                                     AmountIn(row, "MAXORDER")};
                         return false;
                     });
    return decision;
}

} // namespace batch
