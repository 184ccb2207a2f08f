#include "signutils/c_call.h"

#include "signutils/c_session.h"
#include "support/codepage.h"

#include <algorithm>
#include <exception>
#include <new>

namespace
{

constexpr char kNoMemory[] = "There is not enough memory for this call. Free some and call again.";
constexpr char kNoWords[] = "An exception without a text ended the call.";

constinit thread_local signutils::CallError t_error = {};

bool ContinuesCharacter(char byte) noexcept
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

namespace signutils
{

void CallError::Set(std::string_view utf8) noexcept
{
    std::size_t length = std::min(utf8.size(), sizeof text - 1);
    while (length > 0 && length < utf8.size() && ContinuesCharacter(utf8[length]))
    {
        --length;
    }
    std::copy_n(utf8.data(), length, text);
    text[length] = '\0';
}

CallError& ThreadError() noexcept
{
    return t_error;
}

SignUtilsStatus SettleFailure(CallError& error)
{
    // What unwinds a cancelled thread is no C++ exception, and a handler that ends it ends the
    // process.
    if (std::current_exception() == nullptr)
    {
        throw;
    }
    try
    {
        throw;
    }
    catch (const CallRefused& refused)
    {
        error.Set(refused.text);
        return refused.status;
    }
    catch (const std::bad_alloc&)
    {
        error.Set(kNoMemory);
        return SIGNUTILS_OUT_OF_MEMORY;
    }
    catch (const std::exception& raised)
    {
        error.Set(raised.what());
        return SIGNUTILS_UNEXPECTED;
    }
    catch (...)
    {
        error.Set(kNoWords);
        return SIGNUTILS_UNEXPECTED;
    }
}

const char* GivenTexts::Keep(std::string utf8)
{
    return m_texts.emplace_front(std::move(utf8)).c_str();
}

const char* GivenTexts::KeepNarrow(std::string_view narrow)
{
    return Keep(support::Utf8FromNarrow(narrow));
}

const char* GivenTexts::KeepWide(std::wstring_view wide)
{
    return Keep(support::Utf8FromWide(wide));
}

} // namespace signutils

const char* SIGNUTILS_CALL SignUtilsErrorText(const SignUtilsSession* session)
{
    return session == nullptr ? signutils::ThreadError().text : session->error.text;
}
