#include "host/scratch/own_trace.h"

#include "host/output.h"
#include "host/scratch/name.h"
#include "host/text.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"
#include "support/folders.h"
#include "support/temporary_file.h"

namespace scratch
{

std::vector<std::string> TraceFolders()
{
    const std::string first = port::TemporaryFolder();
    const std::string second = support::ProgressFolder();
    return first == second ? std::vector{first} : std::vector{first, second};
}

OwnTrace::OwnTrace()
{
    const std::string name = NewName() + kTraceEnding;
    const std::string path = port::JoinPath(port::TemporaryFolder(), name);
    if (support::WriteNewFile(path, ""))
    {
        m_path = path;
        return;
    }
    const std::string folder = support::ProgressFolder();
    const std::string elsewhere = port::JoinPath(folder, name);
    if (port::CreatePrivateFolder(folder.c_str()) && support::WriteNewFile(elsewhere, ""))
    {
        m_path = elsewhere;
    }
}

OwnTrace::~OwnTrace()
{
    if (!m_path.empty() && DeleteFileA(m_path.c_str()) == 0)
    {
        host::Warn("the trace " + host::Quoted(support::Utf8FromNarrow(m_path)) +
                   " could not be deleted. Delete it by hand.");
    }
}

std::string OwnTrace::Failure()
{
    return "no trace can be written to the folder for temporary files " +
           host::Quoted(support::Utf8FromNarrow(port::TemporaryFolder())) + ", nor to " +
           host::Quoted(support::Utf8FromNarrow(support::ProgressFolder())) +
           ". Give another folder for temporary files (TMPDIR, on Windows TEMP).";
}

} // namespace scratch
