#pragma once

// What a program of this project asks of the platform where it starts and ends.

#include "port/export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace port
{

/// The arguments of the program in UTF-8, without its own name; they may be malformed. `count` and
/// `values` are those of main; Windows gives its own, which have all letters.
SIGNUTILS_PORT_API std::vector<std::string> Utf8Arguments(int count, char** values);

/// Value of an environment variable in UTF-8, empty when it is not set; it may be malformed.
SIGNUTILS_PORT_API std::string Utf8Environment(const char* name);

/// The names of all environment variables, UTF-8; they may be malformed. In capital letters where
/// the system takes Path and PATH for the same.
SIGNUTILS_PORT_API std::vector<std::string> Utf8EnvironmentNames();

/// Lets bytes pass through standard output and error as they are, UTF-8 on a console too.
SIGNUTILS_PORT_API void UseUtf8Output();

/// Lets a write beyond the limit for the size of files fail as on a full disk, where the system
/// would end the process without a word.
SIGNUTILS_PORT_API void FailBeyondFileLimit();

/// From now on a file that is made without rights of its own, as a database driver makes one, is
/// its owner's alone. On Windows the folder says who may read it.
SIGNUTILS_PORT_API void KeepNewFilesPrivate();

/// Whether standard input is a terminal, at which somebody can be asked.
SIGNUTILS_PORT_API bool InputIsTerminal();
/// Whether standard error is a terminal that a line can be drawn anew on.
SIGNUTILS_PORT_API bool ErrorIsTerminal();

/// How many characters a line of the terminal behind standard error has; 0 when that is not known.
SIGNUTILS_PORT_API std::size_t ErrorColumns();

/// Whether standard output, or standard error, is a terminal that takes sequences for colours. On
/// Windows a console is asked to take them.
SIGNUTILS_PORT_API bool OutputTakesColours();
SIGNUTILS_PORT_API bool ErrorTakesColours();

/// The machine's name in its network, UTF-8; empty when the system does not tell.
SIGNUTILS_PORT_API std::string MachineName();

/// Whether a process of that number runs on this machine, whoever it belongs to.
SIGNUTILS_PORT_API bool IsProcessRunning(std::uint32_t process);

} // namespace port
