#pragma once

/// Writes a Windows-1252 text to standard error in UTF-8, as terminals take it. The library itself
/// never writes to standard output.
void printfCharToOem(const char* text);
