#pragma once

#include <cstdint>
#include <string>

namespace services
{

/// What tag_Rc::code says.
enum class HandOffError : std::uint32_t
{
    None = 0,
    RecordMissing = 1,     ///< no record was given
    NameRefused = 2,       ///< partner, service or extension is empty or would leave the store
    FileUnreadable = 3,    ///< the record's file cannot be read
    StoreNotWritable = 4,  ///< the store is there but does not take the file
    IdentifiersUsedUp = 5, ///< the store has given its last identifier
};

/// Why a file was not filed.
struct HandOffFailure
{
    HandOffError code = HandOffError::None;
    std::uint32_t systemCode = 0; ///< the platform's last error, 0 when it has no part in it
    std::string text;             ///< one line
};

} // namespace services
