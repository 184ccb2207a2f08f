#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace database
{

/// What stands in a message in place of a password.
inline constexpr std::string_view kHidden = "***";

/// Whether the value of this key of a connection string is a password, a token or the like.
bool IsSecretKey(std::string_view key);

/// The values of settings with a secret key that stand somewhere in the text: "sslpassword = x".
std::vector<std::string> SecretSettingsIn(std::string_view text);

/// The text with kHidden for every occurrence of a secret, also with letters beyond ASCII that were
/// converted on the way, for the beginning of one at the very end, where a driver may have cut its
/// message, and for the value of what reads as a secret setting. Texts are Windows-1252. Secrets of
/// less than three bytes could stand in any word and are hidden as settings only.
std::string WithoutSecrets(std::string text, const std::vector<std::string>& secrets);

} // namespace database
