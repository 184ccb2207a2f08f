#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace engine
{

/// One treatment of a work: which order file becomes which work files.
struct Treatment
{
    std::string orderFile; ///< Windows-1252
    std::string stem;
};

/// Reads `"order file" "output file" ;`, one for each treatment, joined by " | ". An empty text has
/// none. Anything else raises engine::Failure, also a path that has no place in Windows-1252.
std::vector<Treatment> ReadParameterText(std::wstring_view text);

} // namespace engine
