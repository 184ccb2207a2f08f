#pragma once

#include "tests/host/signcheck_process.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace testing_support
{

/// A sample bank with a folder of orders that are judged by many.
class BatchTest : public SampleBankTest
{
protected:
    BatchTest();

    /// Writes an order file of one transfer of 100.00 EUR into the folder of orders.
    std::string Order(const std::string& name) const;
    /// An order as signcheck names it: with the drive, where the system has drives.
    std::string Named(const std::string& name) const;
    /// Writes the terms of an order beside it.
    void Terms(const std::string& name, const std::string& json) const;

    /// signcheck batch on the folder, with the terms of contract C-1001 signed by Élodie Lefèvre.
    Answer Batch(const std::vector<std::string>& more = {}) const;
    /// The same on what `orders` names.
    Answer BatchOf(const std::string& orders, const std::vector<std::string>& more = {}) const;

    /// The JSON lines of an answer: the orders by their names, and the summary under "".
    std::map<std::string, nlohmann::json> Lines(const Answer& answer) const;

    /// How many history rows each order has, by its name.
    std::map<std::string, int> Rows();
    std::vector<std::string> NamesInFolder() const;
    /// The progress journal of the folder of orders, where it lies by default.
    std::string Journal() const;

    TemporaryFolder m_orders;
    ScopedEnvironment m_progress;
};

} // namespace testing_support
