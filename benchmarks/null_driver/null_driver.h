#pragma once

#include "benchmarks/null_driver/counts.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace null_driver
{

/// The driver as a program sees it that counts with it. It stays loaded for as long as this lives.
class NullDriver
{
public:
    NullDriver();
    ~NullDriver();
    NullDriver(const NullDriver&) = delete;
    NullDriver& operator=(const NullDriver&) = delete;

    /// Connects to a bank whose contract has so many rule lines.
    std::string ConnexionString(std::size_t rules) const;

    /// What was asked for while `work` ran.
    Counts CountDuring(const std::function<void()>& work) const;
    /// The statements run while `work` ran, in their order.
    std::vector<std::u16string> StatementsOf(const std::function<void()>& work) const;

private:
    Counts Counted() const;

    void* m_module;
    ReadCounts m_readCounts;
    Watch m_watch;
};

} // namespace null_driver
