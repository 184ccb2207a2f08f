#pragma once

#include "services/cmoncom.h"
#include "services/tag_rc.h"
#include "support/tsimplestring.h"

#include <cstdint>

namespace psr
{

inline constexpr std::uint32_t kHandedOn = 0;
inline constexpr std::uint32_t kNotHandedOn = 0x00C90004;

/// Files a finished report for the partner under the service. `target` empty or null: the hand-off
/// service's default. `rc` is written on failure only; `fileId` may be null. The temporary file is
/// gone afterwards. Returns kHandedOn or kNotHandedOn and raises nothing that AddFile raises.
std::uint32_t HandOnReport(void* trace, const TSimpleString& report, const char* extension,
                           const char* service, const char* partner, const char* target, tag_Rc& rc,
                           unsigned long* fileId);

/// The same with a client of the caller's.
std::uint32_t HandOnReport(void* trace, cmoncom& client, const TSimpleString& report,
                           const char* extension, const char* service, const char* partner,
                           const char* target, tag_Rc& rc, unsigned long* fileId);

} // namespace psr
