#pragma once

#include "host/check_request.h"

#include <string>

namespace batch
{

/// What a check of the order would rest on now, as a digest: the file as it lies there and the
/// terms that it is judged by. A decision of an earlier run counts for this order only when it was
/// asked for the same.
std::string DigestOfAsked(const host::CheckRequest& request);

} // namespace batch
