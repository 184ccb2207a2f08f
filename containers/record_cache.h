#pragma once

#include "containers/thashtable.h"
#include "support/tsimplestring.h"

/// A cached record, copied whole. The library does not look into it.
struct tagCacheRecordHash
{
    unsigned char content[64];
};

/// The process's cache, there from the library's load to its unload. No operation of the library
/// reads or fills it; it is kept for the components that share it.
extern THashtable<TSimpleString, tagCacheRecordHash> GlobalRecordCache;
