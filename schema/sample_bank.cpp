#include "schema/sample_bank.h"

#include "schema/embedded_files.h"
#include "schema/scripts.h"

#include <cstring>
#include <cwchar>
#include <sstream>

namespace schema
{

namespace
{

constexpr const wchar_t* kHolderMark = L"-- holder ";
constexpr const wchar_t* kContractMark = L"-- contract ";

bool StartsBlock(const std::wstring& line, SampleBlock& block)
{
    for (const wchar_t* mark : {kHolderMark, kContractMark})
    {
        if (line.rfind(mark, 0) == 0)
        {
            block = SampleBlock{mark == kContractMark, line.substr(std::wcslen(mark)), {}};
            return true;
        }
    }
    return false;
}

std::wstring BankFile()
{
    for (std::size_t index = 0; index < kEmbeddedFileCount; ++index)
    {
        if (std::strcmp(kEmbeddedFiles[index].folder, "sample") == 0)
        {
            return kEmbeddedFiles[index].text;
        }
    }
    return std::wstring();
}

} // namespace

std::vector<SampleBlock> SampleBank()
{
    std::vector<SampleBlock> blocks;
    std::wistringstream lines(BankFile());
    std::wstring body;
    const auto endBlock = [&]
    {
        if (!blocks.empty())
        {
            blocks.back().statements = SplitStatements(body);
        }
        body.clear();
    };
    for (std::wstring line; std::getline(lines, line);)
    {
        SampleBlock block;
        if (StartsBlock(line, block))
        {
            endBlock();
            blocks.push_back(std::move(block));
            continue;
        }
        body += line + L'\n';
    }
    endBlock();
    return blocks;
}

} // namespace schema
