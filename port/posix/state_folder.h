#pragma once

#include <string>

namespace port
{

/// Where state is kept: the machine's folder when it may be written, else below XDG_STATE_HOME,
/// which counts only with a full path, else below the home folder. Native paths.
inline std::string ChooseStateFolder(const std::string& machineFolder, bool machineFolderIsWritable,
                                     const std::string& stateHome, const std::string& home)
{
    if (machineFolderIsWritable)
    {
        return machineFolder;
    }
    if (!stateHome.empty() && stateHome.front() == '/')
    {
        return stateHome + "/signutils";
    }
    return home + "/.local/state/signutils";
}

} // namespace port
