#pragma once

#include "support/tsimplestring.h"

/// A column value read as narrow text (Windows-1252; what has no place there is '?').
class CTString : public TSimpleString
{
public:
    using TSimpleString::TSimpleString;
    using TSimpleString::operator=;
};
