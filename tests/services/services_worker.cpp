// services_worker events <connection> <name> <count>
// services_worker files <store> <report> <count>
//
// Does with the services what a second host process would do.

#include "services/cevents.h"
#include "services/cmoncom.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace
{

int WriteEvents(const char* connection, const std::string& name, int count)
{
    unsigned long status = 1;
    CEvents events("WORKER", status);
    events.Connect(connection);
    for (int event = 0; event < count; ++event)
    {
        const std::wstring text =
            std::wstring(name.begin(), name.end()) + L"/" + std::to_wstring(event);
        if (events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, text.c_str(), 0, nullptr) ==
            services::EventOutcome::Lost)
        {
            return 1;
        }
    }
    return 0;
}

int HandOn(const char* store, const char* report, int count)
{
    tagADDFILE record = {};
    std::memcpy(record.service, "STATUS", 6);
    std::memcpy(record.partner, "P", 1);
    std::memcpy(record.filePath, report,
                std::min(std::strlen(report), sizeof(record.filePath) - 1));
    for (int file = 0; file < count; ++file)
    {
        unsigned long id = 0;
        if (!cmoncom(1).AddFile(nullptr, store, &record, id))
        {
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5)
    {
        return 64;
    }
    const int count = std::atoi(argv[4]);
    return std::string(argv[1]) == "events" ? WriteEvents(argv[2], argv[3], count)
                                            : HandOn(argv[2], argv[3], count);
}
