#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace host
{

/// Writes UTF-8 to standard output.
void Print(const std::string& text);

/// Writes one JSON object to standard output, readable, with a final line feed.
void PrintJson(const nlohmann::ordered_json& object);

/// The message with every value that reads as a password hidden: an argument that a message repeats
/// may be a connection string in the wrong place.
std::string WithoutPasswords(const std::string& message);

/// Writes one message to standard error, led by the program's name.
void Complain(const std::string& message);

/// Writes a warning to standard error. Warnings never change the exit status.
void Warn(const std::string& message);

/// Forces out what was printed; false when standard output cannot take it.
bool FlushOutput();

} // namespace host
