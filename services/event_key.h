#pragma once

#include <string>
#include <string_view>

namespace services
{

/// A new key: 36 characters, a random UUID in small letters. By it a database knows an event that
/// it has already.
std::string MakeEventKey();

/// Whether a text has the form of MakeEventKey.
bool IsEventKey(std::string_view text);

} // namespace services
