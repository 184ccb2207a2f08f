#pragma once

namespace testing_support
{

/// Whether the tests are built with AddressSanitizer.
///
/// A cancelled thread is unwound without the frames' own ends, which would clear what the sanitizer
/// marked round their variables. When the unwinding comes to a frame that catches or frees,
/// __asan_handle_no_return looks at the stack, calls sigaltstack with a variable of its own on the
/// marked place and so reports itself, in some of the runs.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

} // namespace testing_support
