#pragma once

namespace rules
{

// Numbers in the message catalogue. Where a currency would stand, an empty text is passed.

inline constexpr unsigned int kHolderInOpposition = 1800;
inline constexpr unsigned int kTotalAboveLimitOne = 1801;
inline constexpr unsigned int kOrderAboveLimitOne = 1802;
inline constexpr unsigned int kTotalAcceptedOne = 1803;
inline constexpr unsigned int kNoRuleForSigners = 1805;
inline constexpr unsigned int kAllSignersAllowed = 1807;
inline constexpr unsigned int kDoubleRequired = 1808;
inline constexpr unsigned int kHolderMissing = 1809;
inline constexpr unsigned int kTooManySigners = 1812;
inline constexpr unsigned int kProfileMismatch = 1815;
inline constexpr unsigned int kNarrativeReason = 1816; ///< a reason text; never journalled
inline constexpr unsigned int kMustSignAlone = 1817;
inline constexpr unsigned int kSameCertificate = 1818;
inline constexpr unsigned int kContractNotActive = 1819;
inline constexpr unsigned int kTotalAboveLimitTwo = 1820;
inline constexpr unsigned int kOrderAboveLimitTwo = 1821;
inline constexpr unsigned int kAcceptedTwo = 1822;
inline constexpr unsigned int kOrderAcceptedOne = 1823;

} // namespace rules
