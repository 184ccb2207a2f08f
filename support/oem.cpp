#include "support/oem.h"

#include "support/codepage.h"

#include <cstdio>
#include <string>

void printfCharToOem(const char* text)
{
    const std::string shown = support::Utf8FromNarrow(text == nullptr ? "" : text);
    // There is nowhere left to tell that standard error cannot be written.
    static_cast<void>(std::fputs(shown.c_str(), stderr));
}
