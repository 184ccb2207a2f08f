#pragma once

#include "tests/fault_driver/fault_driver.h"

#include <string>

namespace fault_driver
{

/// The driver of this process, which stays loaded.
Control& LoadedControl();

/// A connection string of SQLite's driver, through the fault driver. A connection of that driver
/// must be open: its file is found among what the process has loaded.
std::string ThroughFaultDriver(const std::string& connexionString);

} // namespace fault_driver
