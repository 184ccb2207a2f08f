#include "support/oem.h"

#include "support/codepage.h"

#include <cstdio>
#include <string>

void printfCharToOem(const char* text)
{
    const std::string shown = support::Utf8FromNarrow(text == nullptr ? "" : text);
    std::fputs(shown.c_str(), stderr);
}
