#pragma once

#include "host/rulebook/rule_book.h"
#include "host/scratch/copy.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace scratch
{

/// Which rules an order falls under: the contract's key and the order type.
struct OrderKind
{
    rulebook::ContractKey contract;
    std::int64_t type = 0;

    bool operator==(const OrderKind&) const = default;
};

/// An order as the rules see it. Amounts are in the main unit.
struct Order
{
    std::vector<std::string> signers; ///< certificate names, UTF-8
    double total = 0.0;
    double largest = 0.0;
    bool isDistributed = false;
};

inline constexpr unsigned int kNoRule = 0;
inline constexpr unsigned int kAccepted = 1;
inline constexpr unsigned int kRefused = 2;

/// What the library decided; texts are UTF-8.
struct Decision
{
    unsigned int verdict = kRefused;
    std::string reasonCode;
    std::string reasonText;

    bool operator==(const Decision&) const = default;
};

/// Asks the library about orders that nobody has made, on a copy.
class Judge
{
public:
    /// Raises host::Refusal for a contract that no check can name. `copy` must outlive it.
    Judge(const Copy& copy, const OrderKind& kind);

    /// The same object may be asked any number of times. Raises host::Refusal with kCouldNotRun
    /// when the library could not judge.
    Decision Ask(const Order& order);
    /// The same with a trace of the check, as the library writes it, in `trace`.
    Decision AskTraced(const Order& order, std::string& trace);

    /// How many orders were judged.
    std::size_t Count() const noexcept { return m_count; }

private:
    Decision Run(const Order& order, void* trace);

    const Copy& m_copy;
    std::string m_partner; // Windows-1252
    std::string m_service;
    std::string m_client;
    std::uint32_t m_protocol;
    std::uint32_t m_type;
    bool m_isServer;
    std::size_t m_count = 0;
};

} // namespace scratch
