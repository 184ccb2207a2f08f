#include "signutils/c_arguments.h"
#include "signutils/c_call.h"
#include "signutils/measures.h"
#include "support/codepage.h"

using signutils::CallRefused;
using signutils::RunCall;
using signutils::ThreadError;

namespace
{

void WriteMeasuresTo(const std::string& path)
{
    TSimpleString problem;
    if (!signutils::WriteMeasures(path.c_str(), problem))
    {
        throw CallRefused{SIGNUTILS_FAILED,
                          "path: " + support::Utf8FromNarrow(problem.SafeGetString())};
    }
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsStartMeasures()
{
    return RunCall(ThreadError(), [] { signutils::StartMeasures(); });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsWriteMeasures(const char* path)
{
    return RunCall(ThreadError(), [=] { WriteMeasuresTo(signutils::Narrow("path", path)); });
}
