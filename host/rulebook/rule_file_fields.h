#pragma once

#include <cstdint>

namespace rulebook
{

// The names of a rule file, in the one place that its writer, its reader and its checks share.

inline constexpr const char* kHolderTable = "holder";
inline constexpr const char* kContractTable = "contract";

inline constexpr const char* kHuid = "huid";
inline constexpr const char* kPartner = "partner";
inline constexpr const char* kFirstName = "first-name";
inline constexpr const char* kLastName = "last-name";
inline constexpr const char* kOpposition = "opposition";
inline constexpr const char* kCertificates = "certificates";

inline constexpr const char* kCommonName = "name";
inline constexpr const char* kSerial = "serial";
inline constexpr const char* kExpires = "expires";

inline constexpr const char* kCuid = "cuid";
inline constexpr const char* kService = "service";
inline constexpr const char* kClient = "client";
inline constexpr const char* kProtocol = "protocol";
inline constexpr const char* kSide = "side";
inline constexpr const char* kEntry = "entry";
inline constexpr const char* kTerms = "terms";
inline constexpr const char* kRules = "rules";

inline constexpr const char* kType = "type";
inline constexpr const char* kProfile = "profile";
inline constexpr const char* kAllHolders = "all-holders";

inline constexpr const char* kHolder1 = "holder1";
inline constexpr const char* kHolder2 = "holder2";
inline constexpr const char* kAlone = "alone";
inline constexpr const char* kAmount = "amount";
inline constexpr const char* kLevel = "level";

/// A number that has a word in the file; any other number stands as it is.
struct NumberWord
{
    const char* word;
    std::int64_t number;
};

inline constexpr NumberWord kSides[] = {{"server", 1}, {"requester", 0}};
inline constexpr NumberWord kProfiles[] = {{"single", 0}, {"double", 1}};
inline constexpr NumberWord kLevels[] = {{"file", 0}, {"largest-order", 1}};

} // namespace rulebook
