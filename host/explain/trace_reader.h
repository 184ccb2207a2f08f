#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace explain
{

/// A holder whom a rule found among the signers, as the trace tells it.
struct FoundHolder
{
    std::string huid;
    std::string name;
    std::string certificate;
};

/// Which test of the library ended the judging of a rule.
enum class Ending
{
    Unknown, ///< the trace ends before
    Accepted,
    AllAllowed,
    NotConcerned,
    SameCertificate,
    Opposition,
    TotalAboveLimit,
    LargestAboveLimit,
    SingleSignature, ///< the profile asks for one, and there are more
    DoubleSignature, ///< the profile asks for two, and there are fewer
    HolderMissing,
    MustSignAlone,
    NotActive,
};

/// One rule as it was loaded and judged; texts are UTF-8, as the database has them.
struct TracedRule
{
    std::string cuid;
    std::string allHolders;
    std::string profile;
    std::string alone;
    std::string amount;
    std::string level;
    std::string huid1;
    std::string huid2;
    std::vector<FoundHolder> found;
    Ending ending = Ending::Unknown;
    std::string finding; ///< the library's own words, in the language of the check
    bool hadTooManySigners = false;
};

/// One check of a trace.
struct TracedCheck
{
    std::string file;
    std::string begun; ///< local time of the machine, as the trace has it
    std::vector<std::string> signers;
    std::string partner;
    std::string service;
    std::string client;
    std::string protocol; ///< its name
    std::string mode;     ///< "SRV" on the bank's side, "DEM" on the requester's
    bool isDistributed = false;
    std::vector<TracedRule> rules;
    std::optional<unsigned int> verdict; ///< none: not run, or the trace ends before
    std::string error;                   ///< the first one traced
};

/// The checks of a trace file as the library writes it, in their order; other sections are left
/// out.
std::vector<TracedCheck> ReadTrace(std::string_view text);

} // namespace explain
