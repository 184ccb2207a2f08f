#pragma once

#include "containers/tarray.h"
#include "signers/signer_info.h"

namespace rules
{

/// Appends the certificate names of a list separated by ';' to the session's signers, trimmed,
/// without the empty ones. The list itself is not changed; null counts as empty.
void AppendSigners(void* trace, const wchar_t* signerList, TArray<signerInfo>& signers);

} // namespace rules
