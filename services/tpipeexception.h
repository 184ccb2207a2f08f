#pragma once

#include "support/tsimplestring.h"

/// The file hand-off service cannot be reached: its store is missing or not writable.
class TPipeException
{
public:
    explicit TPipeException(const char* message) : m_message(message) {}

    /// Windows-1252, one line.
    const char* GetMessageText() const noexcept { return m_message.SafeGetString(); }

private:
    TSimpleString m_message;
};
