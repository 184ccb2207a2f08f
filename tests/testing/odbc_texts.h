#pragma once

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

// Texts as a driver of tests takes and gives them.

namespace testing_support
{

inline std::string OdbcText(const SQLCHAR* text, SQLINTEGER length)
{
    const char* const bytes = reinterpret_cast<const char*>(text);
    return length == SQL_NTS ? std::string(bytes)
                             : std::string(bytes, static_cast<std::size_t>(length));
}

/// Fills a buffer as ODBC does: cut where it does not fit, and always ended.
template <typename Length>
void TellText(const std::string& told, void* buffer, Length size, Length* length)
{
    if (buffer != nullptr && size > 0)
    {
        const std::size_t count = std::min(told.size(), static_cast<std::size_t>(size) - 1);
        std::memcpy(buffer, told.data(), count);
        static_cast<char*>(buffer)[count] = '\0';
    }
    if (length != nullptr)
    {
        *length = static_cast<Length>(told.size());
    }
}

/// Where SQLGetDiagRec wants a message.
struct DiagnosisPlace
{
    SQLCHAR* state;
    SQLINTEGER* native;
    SQLCHAR* text;
    SQLSMALLINT size;
    SQLSMALLINT* length;
};

/// What a driver says of a call that failed.
struct Diagnosis
{
    std::string state; ///< five characters; empty when there is nothing to say
    SQLINTEGER native = 0;
    std::string message;
};

inline SQLRETURN TellDiagnosis(const Diagnosis& diagnosis, const DiagnosisPlace& place)
{
    std::memcpy(place.state, diagnosis.state.c_str(), 6);
    if (place.native != nullptr)
    {
        *place.native = diagnosis.native;
    }
    TellText(diagnosis.message, place.text, place.size, place.length);
    return SQL_SUCCESS;
}

} // namespace testing_support
