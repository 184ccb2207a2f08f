#pragma once

#include "engine/exact_decimal.h"

#include <cstdint>
#include <string>

namespace engine
{

// What a converter reads out of an order file. Texts are Windows-1252; dates YYYYMMDD or empty.

/// One order (a transfer, a direct debit, a bill).
struct OrderRow
{
    std::string record; ///< where it stands, as error rows name it
    ExactDecimal amount;
    std::string currency;
    std::string debitAccount;
    std::string creditAccount;
    std::string transactionReference;
    bool urgent = false;
    std::string executionDate;
    std::string bankCode; ///< of the counterparty: BIC or national code
    std::string branchCode;
    std::string account; ///< of the counterparty
    std::string label;   ///< text for the counterparty
    std::string name;    ///< of the counterparty
    std::string bankName;
    std::string reference; ///< of the ordering party
};

/// One remittance: a group of orders with common data.
struct RemittanceHead
{
    std::string record;
    std::string controlReference;
    std::string executionDate;
    std::string bankCode; ///< of the own account
    std::string branchCode;
    std::string account;
    std::string label;
    std::string currency; ///< of the account or the orders, may be empty
    std::string name;     ///< ordering party
    std::string sender;   ///< identifier of who sends the file
    std::string reference;
};

/// What is wrong with an order file whose conversion can still go on.
enum class Finding : int
{
    HeaderCount = 1, ///< number of orders of the file differs
    HeaderSum = 2,   ///< control sum of the file differs
    GroupCount = 3,
    GroupSum = 4,
    TotalRecord = 5,  ///< total of a fixed-width remittance differs
    MessageChain = 6, ///< messages of a chain are missing or out of order
    MissingTotal = 7,
    AmountMissing = 10,
    AmountMalformed = 11,
    AmountTooPrecise = 12, ///< more decimals than its currency has
    AmountTooLarge = 13,
    CurrencyMissing = 20,
    CurrencyUnknown = 21,
    RecordMalformed = 30,
    RecordOutOfPlace = 31,
    RecordLength = 32,
    FieldMissing = 40,
    FieldMalformed = 41,
    EmptyGroup = 42,
    EmptyFile = 43,
};

} // namespace engine
