#pragma once

#include "containers/tarray.h"
#include "support/tsimplestring.h"

extern template class SIGNUTILS_API TArray<TSimpleString>;
