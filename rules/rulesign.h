#pragma once

#include "signers/signer_info.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

#include <cstdint>

/// The decision on one rule.
struct ruleSign
{
    TSimpleString cuid;
    TSimpleStringW comment;    ///< left empty
    TSimpleString reasonCode;  ///< ISO 20022 reason of a failure, "AM02" or "NARR"
    TSimpleStringW reasonText; ///< amounts, opposition, success
    TSimpleStringW message;    ///< contract, profile, holders
    signerInfo signer1;
    signerInfo signer2;
    std::int32_t status = 0;      ///< one of rules::kStatus...
    std::int32_t controlType = 0; ///< the rule's tlevel
};

namespace rules
{

inline constexpr std::int32_t kStatusUndecided = 0;
inline constexpr std::int32_t kStatusSuccess = 1;
inline constexpr std::int32_t kStatusFailed = 2;

} // namespace rules
