#pragma once

#include "host/connection.h"
#include "host/option_values.h"
#include "host/order_format.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host
{

/// Characters of an order identifier that the history and the journal keep.
constexpr std::size_t kOrderIdKept = 10;
/// The contract tables keep signed numbers.
constexpr std::uint32_t kLargestContractNumber = 0x7FFFFFFF;

/// Everything that one check is asked with, validated. Narrow texts are Windows-1252.
struct CheckRequest
{
    Connection connection;
    std::string file;      ///< path as the library takes it
    std::string fileShown; ///< the same in UTF-8, as it was given
    std::string partner;
    std::string service;
    std::string client;
    std::uint32_t protocol = 0;
    std::uint32_t contractType = 0;
    bool isRequester = false;
    bool isDistributed = false;
    std::wstring signers;                 ///< as the library takes them
    std::vector<std::string> signerNames; ///< UTF-8, trimmed, empty ones left out
    bool amountsFromFile = false;         ///< else they are given
    std::optional<OrderFormat> format;    ///< of the file, once it is settled
    double total = 0.0;
    double largest = 0.0;
    std::string currency;
    std::string psrService;
    std::string party;
    std::string orderId;
    std::string messageName;
    std::string messageId;
    std::string handOff;
    std::uint32_t fileId = 0;
    std::string requestReference;
    std::string logFile;
    std::string traceFile;
    bool isExplained = false;
    bool asJson = false;
};

/// Reads and validates everything but the order file. Raises UsageRefusal.
CheckRequest ReadCheckTerms(const OptionValues& values);

/// Reads and validates the settings of a check, all but the format of the file. Raises
/// UsageRefusal.
CheckRequest ReadCheckRequest(const OptionValues& values);

/// Certificate names separated by ';', trimmed, empty ones left out; UTF-8.
std::vector<std::string> SplitSigners(const std::string& utf8);

/// The folder that status reports are handed on to, in Windows-1252.
std::string HandOffStore(const CheckRequest& request);

/// What the host must say before the check runs, such as an apostrophe that will cost the history
/// row; each text names option, value and what follows.
std::vector<std::string> WarningsBefore(const CheckRequest& request);

} // namespace host
