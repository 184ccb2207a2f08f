#include "host/authority/map_text.h"

#include <nlohmann/json.hpp>

namespace authority
{

namespace
{

using Json = nlohmann::ordered_json;

Json AsJson(const Band& band)
{
    Json object = {{"above", nullptr}, {"upTo", nullptr}};
    if (band.above)
    {
        object["above"] = *band.above;
    }
    if (band.upTo)
    {
        object["upTo"] = *band.upTo;
    }
    return object;
}

Json AsJson(const Line& line)
{
    Json verdicts = Json::array();
    for (const Verdict& verdict : line)
    {
        verdicts.push_back({{"verdict", verdict.number},
                            {"outcome", OutcomeOf(verdict.number)},
                            {"reasonCode", verdict.reasonCode}});
    }
    return verdicts;
}

Json AsJson(const Row& row)
{
    return {{"label", row.label},
            {"signers", row.signers},
            {"direct", AsJson(row.direct)},
            {"distributed", AsJson(row.distributed)}};
}

Json AsJson(const AuthorityMap& map)
{
    Json object;
    const rulebook::ContractKey& key = map.kind.contract;
    object["partner"] = key.vpname;
    object["service"] = key.vfname;
    object["client"] = key.vcname;
    object["protocol"] = key.protocol;
    object["server"] = key.server != 0;
    object["type"] = nullptr;
    if (!map.isOtherTypes)
    {
        object["type"] = map.kind.type;
    }
    object["pairsDecide"] = map.pairsDecide;
    object["cells"] = Json::array();
    for (const Cell& cell : map.cells)
    {
        object["cells"].push_back(
            {{"total", AsJson(cell.total)}, {"largest", AsJson(cell.largest)}});
    }
    object["rows"] = Json::array();
    for (const Row& row : map.rows)
    {
        object["rows"].push_back(AsJson(row));
    }
    return object;
}

} // namespace

Json AsJson(const ContractMaps& maps)
{
    Json object;
    object["contract"] = maps.cuid;
    object["ordersJudged"] = maps.judged;
    object["provenance"] = maps.provenance;
    object["notes"] = maps.notes;
    object["maps"] = Json::array();
    for (const AuthorityMap& map : maps.maps)
    {
        object["maps"].push_back(AsJson(map));
    }
    return object;
}

} // namespace authority
