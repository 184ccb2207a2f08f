#pragma once

#include <string>

class CDatabase;

namespace testing_support
{

/// The connection string of a user with the rights of a host on the bank's server, as grants.sql of
/// the product gives them: to read the rules and to insert what is recorded, but to create nothing.
/// `bank` is open under the user of `connexionString`, who may make users. For servers.
std::string AsHostUser(CDatabase& bank, const std::string& connexionString);

/// The name of that user.
inline constexpr const char* kHostUser = "signutils_host";

} // namespace testing_support
