#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace services
{

/// One event on its way to the journal; a text that is not there becomes NULL.
struct EventRecord
{
    std::string key;      ///< EVENTKEY, 36 characters, made before the first attempt
    std::string dateTime; ///< when it happened, local: "2026-03-29 14:05:09"
    std::uint16_t level = 0;
    std::optional<std::wstring> source;
    std::optional<std::wstring> reference;
    std::optional<std::wstring> aux1;
    std::optional<std::wstring> aux2;
    std::optional<std::wstring> text;
    std::optional<std::wstring> attachKind;
    std::optional<std::wstring> attachPath;

    bool operator==(const EventRecord&) const = default;
};

} // namespace services
