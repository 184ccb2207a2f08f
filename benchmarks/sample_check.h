#pragma once

#include <string>

namespace benchmarks
{

/// One whole check of a new session, as hosts make one for each order file: given amounts, trace
/// off. Its verdict.
unsigned long SampleCheck(const std::string& connexionString,
                          const wchar_t* signers = L"First Signer;Second Signer");

} // namespace benchmarks
