#pragma once

#include "containers/tarray.h"
#include "database/row_layout.h"
#include "signers/signer_info.h"
#include "support/tsimplestringw.h"

namespace signers
{

// Certificate names and holder identifiers enter as they stand, null as an empty one: what would
// end its literal is refused beforehand (database/literal.h).

/// The holders of one certificate.
TSimpleStringW HoldersOfCertificate(const wchar_t* certificateName);

/// The certificates of one holder that stand among the first `count` signers.
TSimpleStringW CertificatesOfHolder(const char* holderId, const TArray<signerInfo>& signers,
                                    int count);

/// Columns of both queries, in their order.
extern const database::RowLayout kHolderRow;

} // namespace signers
