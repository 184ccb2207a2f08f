#pragma once

#include "rules/check_signatures.h"

#include <string>

/// Writes into the file `path`, in UTF-8 and one a line, every statement that a check may send: the
/// look-ups of contract and signers, the history rows, the audit event.
void WriteStatements(const std::string& path, const rules::ContractKey& contract,
                     const rules::OrderFacts& order, const wchar_t* signerList);
