#include "port/windows/path_error.h"

#include "port/kernel.h"

namespace port
{

bool FailOnPath() noexcept
{
    switch (GetLastError())
    {
    case ERROR_ALREADY_EXISTS:
        SetLastError(ERROR_FILE_EXISTS);
        break;
    case ERROR_DIRECTORY: // a file where a folder is needed
    case ERROR_BAD_PATHNAME:
        SetLastError(ERROR_PATH_NOT_FOUND);
        break;
    default:
        break;
    }
    return false;
}

} // namespace port
