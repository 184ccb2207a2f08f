#pragma once

#include "containers/tarray.h"
#include "database/row_layout.h"
#include "signers/signer_info.h"

#include <string>

namespace signers
{

// Certificate names and holder identifiers enter as they stand, null as an empty one: what would
// end its literal is refused beforehand (database/literal.h).

/// Appends the query for the holders of one certificate.
void AppendHoldersOfCertificate(std::wstring& statement, const wchar_t* certificateName);

/// Appends the query for the certificates of one holder that stand among the first `count` signers.
void AppendCertificatesOfHolder(std::wstring& statement, const char* holderId,
                                const TArray<signerInfo>& signers, int count);

/// Columns of both queries, in their order.
inline constexpr database::ColumnLayout kHolderColumns[] = {
    {"HUID", database::ColumnKind::Narrow, 64},
    {"VPNAME", database::ColumnKind::Narrow, 8},
    {"FNAME", database::ColumnKind::Wide, 255},
    {"LNAME", database::ColumnKind::Wide, 255},
    {"OPPOSITION", database::ColumnKind::Narrow, 20},
    {"CN", database::ColumnKind::Wide, 255},
    {"SERIAL", database::ColumnKind::Narrow, 64},
    {"EXPIRDATE", database::ColumnKind::Narrow, 32},
};
extern const database::RowLayout kHolderRow;

} // namespace signers
