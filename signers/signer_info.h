#pragma once

#include "containers/tarray.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

/// One signer of an order.
struct signerInfo
{
    TSimpleStringW certificate; ///< common name of the certificate, as it came in the signer list
    TSimpleStringW lastName;    ///< empty until the signer is matched
    TSimpleStringW firstName;   ///< empty until the signer is matched
};

extern template class SIGNUTILS_API TArray<signerInfo>;
