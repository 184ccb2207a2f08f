#pragma once

#include <string>

namespace host
{

/// What keeps any order file of this folder from being converted: no conversion engine, or a folder
/// that cannot be written. UTF-8, with the remedy; empty when neither does. `orderPath` is
/// Windows-1252. The thread must have COM.
std::string ConversionObstacle(const std::string& orderPath);

} // namespace host
