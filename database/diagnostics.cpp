#include "database/diagnostics.h"

#include "database/cdbexception.h"
#include "database/odbc_text.h"
#include "database/secrets.h"
#include "support/codepage.h"
#include "support/utf16.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace database
{

namespace
{

// A driver with more to say than this repeats itself.
constexpr SQLSMALLINT kMostRecords = 16;
constexpr std::size_t kMessageUnits = 2048;
constexpr std::size_t kStateLength = 5;

struct Record
{
    std::string state;
    std::int32_t nativeError = 0;
    std::string message;
};

/// The part of a buffer that the driver filled, whatever it says of the length.
template <typename Character>
std::basic_string_view<Character> Filled(const Character* buffer, std::size_t size,
                                         SQLSMALLINT length)
{
    const std::size_t told = length < 0 ? 0 : static_cast<std::size_t>(length);
    return {buffer, std::min(told, size - 1)};
}

bool ReadWide(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, Record& record)
{
    char16_t state[kStateLength + 1] = {};
    char16_t message[kMessageUnits] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result =
        SQLGetDiagRecW(kind, handle, number, OdbcUnits(state), &native, OdbcUnits(message),
                       static_cast<SQLSMALLINT>(kMessageUnits), &length);
    if (!SQL_SUCCEEDED(result))
    {
        return false;
    }
    record.state =
        support::NarrowFromWide(support::WideFromUtf16(std::u16string_view(state, kStateLength)));
    record.nativeError = native;
    record.message =
        support::NarrowFromWide(support::WideFromUtf16(Filled(message, kMessageUnits, length)));
    return true;
}

bool ReadNarrow(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, Record& record)
{
    char state[kStateLength + 1] = {};
    char message[kMessageUnits] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN result = SQLGetDiagRec(kind, handle, number, reinterpret_cast<SQLCHAR*>(state),
                                           &native, reinterpret_cast<SQLCHAR*>(message),
                                           static_cast<SQLSMALLINT>(kMessageUnits), &length);
    if (!SQL_SUCCEEDED(result))
    {
        return false;
    }
    record.state = std::string(state, kStateLength);
    record.nativeError = native;
    record.message =
        support::NarrowFromWide(support::WideFromUtf8(Filled(message, kMessageUnits, length)));
    return true;
}

/// "[42000] message", on one line because traces and journals have one line a text.
std::string ShownRecord(const Record& record)
{
    std::string shown = "[" + record.state + "] " + record.message;
    std::replace_if(
        shown.begin(), shown.end(),
        [](char each) { return static_cast<unsigned char>(each) < 0x20; }, ' ');
    return shown;
}

std::string ShownAttempt(const Attempt& attempt)
{
    std::string shown(attempt.operation);
    if (!attempt.detail.empty())
    {
        shown += ": ";
        shown += support::NarrowFromWide(attempt.detail);
    }
    return shown;
}

} // namespace

void RaiseDriverError(SQLRETURN returnCode, const DriverHandle& handle, const MessageRules& rules,
                      const Attempt& attempt)
{
    const auto read = rules.crossing == TextCrossing::Utf16 ? ReadWide : ReadNarrow;
    Record first;
    std::string text;
    for (SQLSMALLINT number = 1; number <= kMostRecords; ++number)
    {
        Record record;
        if (!read(handle.kind, handle.handle, number, record))
        {
            break;
        }
        record.message = WithoutSecrets(std::move(record.message), rules.secrets);
        if (number == 1)
        {
            first = record;
        }
        text += number == 1 ? "" : " ";
        text += ShownRecord(record);
    }
    if (text.empty())
    {
        first.state = "HY000";
        text = "[HY000] The driver gives no reason.";
    }
    throw new CDBException(returnCode, first.state.c_str(), first.nativeError, text.c_str(),
                           ShownAttempt(attempt).c_str());
}

void RaiseRefusal(const char* state, std::string_view text, const Attempt& attempt)
{
    const std::string first = "[" + std::string(state) + "] " + std::string(text);
    throw new CDBException(SQL_ERROR, state, 0, first.c_str(), ShownAttempt(attempt).c_str());
}

} // namespace database
