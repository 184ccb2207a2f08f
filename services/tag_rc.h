#pragma once

#include <cstdint>

/// Error record of the file hand-off service. Zero-filled when nothing failed.
struct tag_Rc
{
    std::uint32_t code;       ///< what failed, one of services::HandOffError
    std::uint32_t systemCode; ///< the platform's last error, 0 when none
    char text[255];           ///< one line, Windows-1252, at most 254 characters and a NUL
};
