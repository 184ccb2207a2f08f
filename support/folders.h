#pragma once

#include <string>

namespace support
{

/// The folders of the services: the environment variable when set, else below the state folder.
std::string SpoolFolder();   ///< SIGNUTILS_SPOOL
std::string HandOffFolder(); ///< SIGNUTILS_HANDOFF

} // namespace support

/// The configuration folder with its final separator: SIGNUTILS_CONFIG, else /etc/signutils when
/// it holds CtlVEU.INI, else the module's folder.
std::string DoLoadPath();
