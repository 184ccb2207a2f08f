#pragma once

#include "host/doctor/finding.h"
#include "host/option_values.h"

#include <string>

namespace doctor
{

// What is looked at on this machine. Nothing is written but the engine's order in a folder of its
// own, which is gone at the end. Each may raise host::Refusal.

/// The store of status reports: --hand-off, else SIGNUTILS_HANDOFF, else the usual folder.
Findings CheckStore(const host::OptionValues& values);

/// The spool of events. `connexionString` tells which of its files is this database's,
/// Windows-1252; empty without one.
Findings CheckSpool(const std::string& connexionString);

/// The folder of progress journals of batch and watch: its rights, and the journals that no running
/// process holds. None is ever removed: without it every order that still lies in its folder would
/// be judged again, and it does not name that folder.
Findings CheckProgress();

/// The conversion engine: found, loaded, and an order file of its own converted to the last cent.
Findings CheckEngine();

/// Settings file, environment and display configuration.
Findings CheckSettings(const host::OptionValues& values);

} // namespace doctor
