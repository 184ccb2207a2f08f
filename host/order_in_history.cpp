#include "host/order_in_history.h"

#include "host/amount_columns.h"
#include "host/check_request.h"
#include "host/option_readers.h"
#include "host/query.h"
#include "host/query_options.h"
#include "host/refusal.h"
#include "host/text.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>

namespace host
{

namespace
{

// What a check cuts the list of signers to.
constexpr std::size_t kSignersLength = 2048;

const std::vector<std::string> kColumns = {"DATETIME", "SERVER",   "VPNAME",  "TYPE_PTC",
                                           "VFNAME",   "VCNAME",   "ORDERID", "CNS",
                                           "TOTAL",    "MAXORDER", "FILENAME"};

std::string Statement(CDatabase& database, const Conditions& conditions)
{
    return "SELECT " + SelectedColumns(database, kColumns) + " FROM HST_SIGNRULES" +
           conditions.Clause() + " ORDER BY ROWNO";
}

rulebook::ContractKey KeyOf(const QueryRow& row)
{
    return {row.at("VPNAME"), row.at("VFNAME"), row.at("VCNAME"),
            support::ToInt64(row.at("TYPE_PTC").c_str()),
            support::ToInt64(row.at("SERVER").c_str())};
}

bool IsSameName(const std::string& left, const std::string& right)
{
    return support::EqualIgnoringCase(support::WideFromUtf8(left).c_str(),
                                      support::WideFromUtf8(right).c_str());
}

void Take(const QueryRow& row, OrderInHistory& order)
{
    if (support::WideFromUtf8(row.at("CNS")).size() >= kSignersLength)
    {
        throw Refusal(kFindings, "the history's list of signers of this order fills its column "
                                 "CNS and may have been cut. Give --signers, --total, --largest "
                                 "and --currency instead.");
    }
    for (const std::string& signer : SplitSigners(row.at("CNS")))
    {
        const bool isNew =
            std::none_of(order.signers.begin(), order.signers.end(),
                         [&signer](const auto& each) { return IsSameName(each, signer); });
        if (isNew)
        {
            order.signers.push_back(signer);
        }
    }
    order.total = support::ToDouble(row.at("TOTAL").c_str());
    order.largest = support::ToDouble(row.at("MAXORDER").c_str());
    order.last = row.at("DATETIME");
    ++order.rows;
}

bool IsOf(const QueryRow& row, const OrderInHistory& order)
{
    return KeyOf(row) == order.key && row.at("ORDERID") == order.orderId &&
           row.at("FILENAME") == order.file;
}

std::string InWords(const OrderInHistory& order)
{
    return "order " + Quoted(order.orderId) + ", file " + Quoted(order.file) + ", " +
           authority::KeyInWords(order.key);
}

OrderInHistory TheOnly(const std::vector<OrderInHistory>& found)
{
    if (found.empty())
    {
        throw Refusal(kFindings, "the history has no check of this order under the contract. Give "
                                 "--order-id and --file as signcheck history shows them, or "
                                 "--signers, --total, --largest and --currency.");
    }
    if (found.size() > 1)
    {
        std::string all;
        for (const OrderInHistory& each : found)
        {
            all += (all.empty() ? "" : "; ") + InWords(each);
        }
        throw Refusal(kFindings, "the history has checks of several orders that are named so: " +
                                     all + ". Give both --order-id and --file.");
    }
    return found.front();
}

} // namespace

bool IsNamedInHistory(const OptionValues& values)
{
    const OptionValue* const id = values.Find("order-id");
    const OptionValue* const named = id != nullptr ? id : values.Find("file");
    if (named == nullptr)
    {
        return false;
    }
    for (const char* const option : {"signers", "total", "largest"})
    {
        if (const OptionValue* const given = values.Find(option); given != nullptr)
        {
            throw UsageRefusal(named->origin +
                               " takes signatures and amounts from the history, but they are given "
                               "as well (" +
                               given->origin + "). Leave one or the other out.");
        }
    }
    return true;
}

OrderInHistory FindInHistory(CDatabase& database, const Connection& connection,
                             const OptionValues& values,
                             const std::vector<authority::ContractUnderKey>& parts)
{
    RequireTable(database, connection, "HST_SIGNRULES", "STATUT");
    Conditions conditions;
    FilterBy(values, "order-id", "ORDERID", conditions);
    FilterBy(values, "file", "FILENAME", conditions);
    std::vector<OrderInHistory> found;
    ForEachRow(database, connection, Statement(database, conditions), kColumns,
               [&](const QueryRow& row)
               {
                   const rulebook::ContractKey key = KeyOf(row);
                   if (std::none_of(parts.begin(), parts.end(),
                                    [&key](const auto& part) { return part.key == key; }))
                   {
                       return true;
                   }
                   auto order = std::find_if(found.begin(), found.end(),
                                             [&row](const auto& each) { return IsOf(row, each); });
                   if (order == found.end())
                   {
                       order = found.insert(order, OrderInHistory());
                       order->key = key;
                       order->orderId = row.at("ORDERID");
                       order->file = row.at("FILENAME");
                   }
                   Take(row, *order);
                   return true;
               });
    return TheOnly(found);
}

} // namespace host
