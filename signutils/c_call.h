#pragma once

#include "signutils/signutils_c.h"

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>

namespace signutils
{

/// Why the last call failed. Plain memory, so that it can be written when there is none left, and
/// so that the one of a thread needs no destructor.
struct CallError
{
    char text[1024];

    /// Keeps whole characters of a UTF-8 text.
    void Set(std::string_view utf8) noexcept;
    void Clear() noexcept { text[0] = '\0'; }
};

/// That of calls without a session.
CallError& ThreadError() noexcept;

/// Ends a call of the C interface from within; never leaves it.
struct CallRefused
{
    SignUtilsStatus status;
    std::string text;
};

/// Sorts the exception that is being handled. Passes on the unwinding of a cancelled thread.
SignUtilsStatus SettleFailure(CallError& error);

/// The one way from the C interface into C++: no exception leaves it, and what became of the call
/// is in `error`.
template <typename Work>
SignUtilsStatus RunCall(CallError& error, const Work& work)
{
    try
    {
        work();
    }
    catch (...)
    {
        return SettleFailure(error);
    }
    error.Clear();
    return SIGNUTILS_OK;
}

/// The texts that a call gives out, in UTF-8; they keep their addresses.
class GivenTexts
{
public:
    const char* Keep(std::string utf8);
    const char* KeepNarrow(std::string_view narrow);
    const char* KeepWide(std::wstring_view wide);
    void Swap(GivenTexts& other) noexcept { m_texts.swap(other.m_texts); }

private:
    std::forward_list<std::string> m_texts;
};

/// Runs `work` on a handle that owns texts. Those of the call before live until this one ends,
/// since they may be its arguments.
template <typename Handle, typename Work>
SignUtilsStatus RunWithTexts(CallError& error, Handle& handle, const Work& work)
{
    return RunCall(error,
                   [&]
                   {
                       GivenTexts texts;
                       work(texts);
                       handle.texts.Swap(texts);
                   });
}

} // namespace signutils
