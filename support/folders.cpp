#include "support/folders.h"

#include "port/environment.h"
#include "port/files.h"

namespace
{

constexpr const char* kLayoutFile = "CtlVEU.INI";

std::string ServiceFolder(const char* variable, const char* name)
{
    const std::string chosen = port::Environment(variable);
    return chosen.empty() ? port::JoinPath(port::StateFolder(), name) : chosen;
}

std::string ConfigurationFolder()
{
    std::string chosen = port::Environment("SIGNUTILS_CONFIG");
    if (!chosen.empty())
    {
        return chosen;
    }
    std::string system = port::SystemConfigurationFolder();
    if (!system.empty() && port::FileExists(port::JoinPath(system, kLayoutFile).c_str()))
    {
        return system;
    }
    return port::ModuleFolder();
}

} // namespace

namespace support
{

std::string SpoolFolder()
{
    return ServiceFolder("SIGNUTILS_SPOOL", "spool");
}

std::string HandOffFolder()
{
    return ServiceFolder("SIGNUTILS_HANDOFF", "handoff");
}

std::string ProgressFolder()
{
    return ServiceFolder("SIGNCHECK_PROGRESS", "progress");
}

} // namespace support

std::string DoLoadPath()
{
    std::string folder = ConfigurationFolder();
    if (folder.empty() || !port::IsPathSeparator(folder.back()))
    {
        folder.push_back(port::PathSeparator());
    }
    return folder;
}
