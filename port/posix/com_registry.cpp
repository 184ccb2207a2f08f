#include "port/posix/com_registry.h"

#include "port/environment.h"
#include "port/files.h"
#include "port/posix/native_text.h"
#include "port/posix/profile_text.h"

#include <cstdio>

namespace port
{

namespace
{

constexpr const char* kFileName = "signutils-com.ini";

std::string FolderOf(const std::string& path)
{
    const std::size_t end = path.find_last_of('/');
    return end == std::string::npos ? "." : path.substr(0, end + 1);
}

/// `registry` is a Windows-1252 path as all paths are; module names in the file are in the
/// platform's own form.
std::string ModuleIn(const std::string& registry, const std::string& clsid)
{
    std::vector<ProfileSection> sections;
    if (!ReadProfile(registry.c_str(), sections))
    {
        return std::string();
    }
    const ProfileSection* const section = FindSection(sections, "InprocServer32");
    const ProfileLine* const line = section == nullptr ? nullptr : FindKey(*section, clsid);
    const std::string module(line == nullptr ? "" : WithoutQuotes(line->value));
    if (module.empty() || IsPathSeparator(module.front()))
    {
        return module;
    }
    return JoinPath(FolderOf(NativePath(registry.c_str())), module);
}

} // namespace

std::string ClassText(REFCLSID clsid)
{
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  clsid.Data1, clsid.Data2, clsid.Data3, clsid.Data4[0], clsid.Data4[1],
                  clsid.Data4[2], clsid.Data4[3], clsid.Data4[4], clsid.Data4[5], clsid.Data4[6],
                  clsid.Data4[7]);
    return text;
}

std::string ModuleOfClass(REFCLSID clsid)
{
    const std::string text = ClassText(clsid);
    if (const std::string chosen = Environment("SIGNUTILS_COM_REGISTRY"); !chosen.empty())
    {
        return ModuleIn(chosen, text);
    }
    const std::string configuration = Environment("SIGNUTILS_CONFIG");
    const std::string folder = configuration.empty() ? SystemConfigurationFolder() : configuration;
    const std::string module = ModuleIn(JoinPath(folder, kFileName), text);
    return module.empty() ? ModuleIn(JoinPath(ModuleFolder(), kFileName), text) : module;
}

} // namespace port
