#include "host/sentence.h"

#include "host/text.h"

namespace host
{

std::string BecauseOf(const std::string& cause)
{
    const std::string shown = Printable(cause);
    const std::size_t last = shown.find_last_not_of(" .");
    return last == std::string::npos ? std::string(".") : ": " + shown.substr(0, last + 1) + ".";
}

std::string Counted(std::uint64_t count, const char* one, const char* several)
{
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

} // namespace host
