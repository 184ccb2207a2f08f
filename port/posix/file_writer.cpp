#include "port/file_writer.h"

#include "port/posix/native_text.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace port
{

Writer WriterOf(const char* path)
{
    const int descriptor =
        open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0)
    {
        return Writer::Unknown;
    }
    // A lease to read is given only where nobody writes. Whoever opens the file to write in that
    // moment waits until it is given back; the signal of that must be one that ends nobody.
    Writer writer = Writer::Unknown;
    if (fcntl(descriptor, F_SETSIG, SIGURG) == 0)
    {
        if (fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0)
        {
            writer = Writer::None;
            fcntl(descriptor, F_SETLEASE, F_UNLCK);
        }
        else if (errno == EAGAIN)
        {
            writer = Writer::Some;
        }
    }
    close(descriptor);
    return writer;
}

} // namespace port
