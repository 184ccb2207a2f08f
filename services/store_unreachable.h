#pragma once

#include <string>

namespace services
{

/// Raises the TPipeException of a store that cannot be used at all: what is wrong with which path,
/// and why as the platform's last error tells.
[[noreturn]] void RaiseStoreUnreachable(const char* what, const std::string& path);

} // namespace services
