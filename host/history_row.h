#pragma once

#include "host/listing/newest_first.h"
#include "host/listing/record.h"
#include "host/listing/text_filter.h"
#include "host/option_values.h"
#include "host/query.h"

#include <string>
#include <vector>

namespace host
{

/// The decisions and their key.
inline constexpr listing::NumberedTable kHistoryTable = {"HST_SIGNRULES", "ROWNO"};

/// The columns of a history row as they are read.
const std::vector<std::string>& HistoryColumns();

/// How history rows are listed.
const listing::Shape& HistoryShape();

/// A row in both of its forms; `row` must outlive it.
listing::Record HistoryRecord(const QueryRow& row);

/// The number of a verdict given by name or number. Raises UsageRefusal that lists them.
int VerdictFrom(const OptionValue& value);
/// The name of a verdict; the text itself when it has none.
std::string VerdictName(const std::string& statut);

/// Whether a holder of the row's rule or a certificate among its signers fits.
bool AnySignerFits(const listing::TextFilter& signer, const QueryRow& row);

} // namespace host
