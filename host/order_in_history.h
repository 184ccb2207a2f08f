#pragma once

#include "host/authority/contract_maps.h"
#include "host/hypothetical_order.h"
#include "host/option_values.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host
{

/// An order as the history knows it: what its checks have written so far.
struct OrderInHistory
{
    rulebook::ContractKey key;
    std::vector<std::string> signers; ///< of all its rows, each once, in the order of their coming
    double total = 0.0;               ///< of the latest row
    double largest = 0.0;
    std::size_t rows = 0;
    std::string last;    ///< when the latest row was written
    std::string orderId; ///< as recorded
    std::string file;
};

/// Whether --order-id or --file names an order of the history. Raises UsageRefusal when signatures
/// or amounts are given as well.
bool IsNamedInHistory(const OptionValues& values);

/// The order that --order-id and --file name under one of these keys. Raises Refusal with kFindings
/// when there is none or more than one, or when a list of signers may have been cut.
OrderInHistory FindInHistory(CDatabase& database, const Connection& connection,
                             const OptionValues& values,
                             const std::vector<authority::ContractUnderKey>& parts);

} // namespace host
