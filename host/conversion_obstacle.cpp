#include "host/conversion_obstacle.h"

#include "amounts/com_guards.h"
#include "amounts/engine_interfaces.h"
#include "host/com_apartment.h"
#include "host/order_path.h"
#include "host/text.h"
#include "port/class_advice.h"
#include "port/files.h"
#include "support/codepage.h"

namespace host
{

namespace
{

std::string EngineObstacle()
{
    amounts::ComPointer<amounts::IFmtRun> engine;
    const HRESULT result = engine.Create(amounts::kRunClass, CLSCTX_SERVER, amounts::kRunInterface);
    if (SUCCEEDED(result))
    {
        return {};
    }
    if (result == REGDB_E_CLASSNOTREG)
    {
        return "no conversion engine is registered (error " + ComErrorText(result) + "). " +
               port::AdviceToRegister();
    }
    return "the conversion engine cannot be started (error " + ComErrorText(result) +
           "). See whether its module is where " + port::NameOfClassRegistry() +
           " says, and whether it can be loaded";
}

} // namespace

std::string ConversionObstacle(const std::string& orderPath)
{
    if (orderPath.find('"') != std::string::npos)
    {
        return "the path of the order file holds a quotation mark, which ends a path for the "
               "conversion engine. Rename the file or the folder";
    }
    if (std::string engine = EngineObstacle(); !engine.empty())
    {
        return engine;
    }
    const std::string folder = FolderOf(orderPath);
    if (!port::IsWritableFolder(folder.c_str()))
    {
        return "the folder " + Quoted(support::Utf8FromNarrow(folder)) +
               " cannot be written, and the conversion's work files lie beside the order file. "
               "Give this user the right to write there, or check a copy in another folder";
    }
    return {};
}

} // namespace host
