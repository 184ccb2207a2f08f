#include "containers/record_cache.h"

#include <type_traits>

static_assert(std::is_trivially_copyable_v<tagCacheRecordHash>);

THashtable<TSimpleString, tagCacheRecordHash> GlobalRecordCache(3);
