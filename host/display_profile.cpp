#include "host/display_profile.h"

#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "port/profile.h"
#include "support/codepage.h"
#include "support/folders.h"

namespace host
{

namespace
{

constexpr const char* kProfileName = "CtlVEU.INI";
constexpr const char* kRemedy =
    " The file comes with signcheck, beside its libraries; copy it from there, or name its folder "
    "in SIGNUTILS_CONFIG.";
// As the readers of the profile file have room for.
constexpr std::size_t kLongestPath = 259;

bool HasSection(const std::string& profile, const std::string& section)
{
    char lines[64];
    return GetPrivateProfileSectionA(section.c_str(), lines, sizeof lines, profile.c_str()) > 0;
}

std::string FindSection(const std::string& profile, const std::string& name,
                        const OrderFormat& format)
{
    const std::string special = name + " " + format.Name();
    for (const std::string& section : {special, name})
    {
        if (HasSection(profile, section))
        {
            return section;
        }
    }
    throw Refusal(kCouldNotRun, "order display: " + Quoted(support::Utf8FromNarrow(profile)) +
                                    " has no section [" + name +
                                    "], or an empty one, nor a section "
                                    "[" +
                                    special + "]. Add it." + kRemedy);
}

} // namespace

DisplayProfile FindDisplayProfile(const OrderFormat& format)
{
    const std::string path = DoLoadPath() + kProfileName;
    const std::string shown = support::Utf8FromNarrow(path);
    if (!port::FileExists(path.c_str()))
    {
        throw Refusal(kCouldNotRun, "order display: there is no file " + Quoted(shown) +
                                        ", which says what is shown." + kRemedy);
    }
    if (path.size() > kLongestPath)
    {
        throw Refusal(kCouldNotRun, "order display: the path " + Quoted(shown) + " has " +
                                        std::to_string(path.size()) +
                                        " characters. Put the file into a folder whose path is "
                                        "shorter, and name it in SIGNUTILS_CONFIG.");
    }
    DisplayProfile profile;
    profile.path = shown;
    profile.remittance = FindSection(path, "remittance", format);
    profile.order = FindSection(path, "order", format);
    profile.remittanceDisplay = FindSection(path, "remittance display", format);
    profile.orderDisplay = FindSection(path, "order display", format);
    return profile;
}

} // namespace host
