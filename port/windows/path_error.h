#pragma once

namespace port
{

/// Gives back false, with the last error of a call that names a path told by the one code that the
/// rooms know for its reason.
bool FailOnPath() noexcept;

} // namespace port
