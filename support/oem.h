#pragma once

/// Writes a Windows-1252 text to standard error in the terminal's encoding. The library itself
/// never writes to standard output.
void printfCharToOem(const char* text);
