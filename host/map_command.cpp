#include "host/map_command.h"

#include "database/cdatabase.h"
#include "host/authority/contract_maps.h"
#include "host/authority/map_text.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/html_page.h"
#include "host/option_readers.h"
#include "host/output.h"

#include <nlohmann/json.hpp>

namespace host
{

int RunMap(const OptionValues& values)
{
    RequirePlaceForHtmlPage(values);
    const std::string cuid = Required(values, "contract", "signcheck map CONTRACT --db CONN").text;
    const Connection connection = ConnectionFrom(values);
    CDatabase database;
    OpenRulesDatabase(database, connection);
    const authority::ContractMaps maps = authority::MapContract(database, connection, cuid);
    WriteHtmlPageAskedFor(values, authority::AsHtml(maps));
    if (values.IsOn("json"))
    {
        PrintJson(authority::AsJson(maps));
        return kDone;
    }
    Print(authority::AsText(maps));
    return kDone;
}

} // namespace host
