#include "amounts/format_conversion.h"

#include "amounts/engine_session.h"
#include "support/checked_copy.h"

#include <cstddef>

namespace
{

constexpr unsigned int kFormatMissing = 287;
constexpr std::size_t kErrorTextSize = 256;

bool IsMissing(const char* text)
{
    return text == nullptr || *text == '\0';
}

int Fail(const TSimpleString& error, char* errorText)
{
    if (errorText != nullptr)
    {
        support::TruncatingCopy(errorText, kErrorTextSize, error.SafeGetString());
    }
    return 0;
}

} // namespace

namespace amounts
{

int ExecWorkFmt(const AmountSource& source, char* errorText)
{
    if (IsMissing(source.format1) || IsMissing(source.format2) || IsMissing(source.fileName))
    {
        TSimpleString error;
        error.LoadStringA(kFormatMissing);
        return Fail(error, errorText);
    }
    EngineSession session(source.fileName, source.format1, source.format2);
    return session.Convert() ? 1 : Fail(session.ErrorText(), errorText);
}

} // namespace amounts
