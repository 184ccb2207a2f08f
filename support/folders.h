#pragma once

#include <string>

namespace support
{

/// The folders of the services: the environment variable when set, else below the state folder.
std::string SpoolFolder();   ///< SIGNUTILS_SPOOL
std::string HandOffFolder(); ///< SIGNUTILS_HANDOFF

/// The folder in which signcheck keeps what it judged of many orders: SIGNCHECK_PROGRESS when set,
/// else below the state folder.
std::string ProgressFolder();

} // namespace support

/// The configuration folder with its final separator: SIGNUTILS_CONFIG, else /etc/signutils when
/// it holds CtlVEU.INI, else the module's folder.
std::string DoLoadPath();
