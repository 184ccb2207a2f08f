#pragma once

#include "support/export.h"
#include "support/tsimplestring.h"

#include <cstdint>

/// Long names of the bank protocols by number.
class SIGNUTILS_API TProtocolCatalogue
{
public:
    /// The name, or an empty text for a number that is not known. At most 63 characters for the
    /// numbers that the catalogue brings along.
    TSimpleString GetProtocolLongName(unsigned long protocol) const;

    /// Adds or renames a protocol for the whole process; thread-safe. A null or empty name takes
    /// the host's own entry away again.
    static void Register(unsigned long protocol, const char* longName);

    /// Number and name of the protocols known, in rising order; false past the last.
    static bool GetAt(int index, unsigned long& protocol, TSimpleString& longName);
};
