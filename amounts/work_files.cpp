#include "amounts/work_files.h"

#include "port/files.h"

namespace amounts
{

std::string WorkFilePath(const char* fileName, const WorkFileKind& kind)
{
    return std::string(fileName) + kind.ending;
}

void DeleteWorkFiles(const char* fileName)
{
    for (const WorkFileKind& kind : kWorkFiles)
    {
        DeleteFileA(WorkFilePath(fileName, kind).c_str());
    }
}

} // namespace amounts
