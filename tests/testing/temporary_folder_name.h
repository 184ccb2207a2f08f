#pragma once

namespace testing_support
{

/// How the name of every TemporaryFolder begins, to tell it from what programs leave.
inline constexpr const char* kTemporaryFolderPrefix = "signutils-test-";

} // namespace testing_support
