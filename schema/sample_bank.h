#pragma once

#include <string>
#include <vector>

namespace schema
{

/// A holder with its certificates or a contract with its rules: the statements that write it.
struct SampleBlock
{
    bool isContract;  ///< else a holder
    std::wstring key; ///< CUID or HUID
    std::vector<std::wstring> statements;
};

/// The sample bank, in the order of its file.
std::vector<SampleBlock> SampleBank();

} // namespace schema
