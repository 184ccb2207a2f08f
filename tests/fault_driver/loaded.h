#pragma once

#include "tests/fault_driver/fault_driver.h"

#include <string>

namespace fault_driver
{

/// The entry points that the driver has; it comes twice.
enum class Entries
{
    Narrow,     ///< the driver manager converts what the library sends in wide calls
    WideAsWell, ///< the library's wide calls reach the driver
};

/// The driver of this process, which stays loaded.
Control& LoadedControl(Entries entries = Entries::Narrow);

/// A connection string of SQLite's driver, through the fault driver. A connection of that driver
/// must be open: its file is found among what the process has loaded.
std::string ThroughFaultDriver(const std::string& connexionString,
                               Entries entries = Entries::Narrow);

} // namespace fault_driver
