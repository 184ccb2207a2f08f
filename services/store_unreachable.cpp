#include "services/store_unreachable.h"

#include "port/kernel.h"
#include "services/system_error.h"
#include "services/tpipeexception.h"
#include "support/format.h"

namespace services
{

void RaiseStoreUnreachable(const char* what, const std::string& path)
{
    const std::string reason = SystemErrorText(GetLastError());
    const std::string shown = OneLine(path);
    throw TPipeException(support::FormatA("The file hand-off store %s: \"%s\": %s", what,
                                          shown.c_str(), reason.c_str())
                             .c_str());
}

} // namespace services
