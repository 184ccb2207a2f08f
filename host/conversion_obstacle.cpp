#include "host/conversion_obstacle.h"

#include "amounts/com_guards.h"
#include "amounts/engine_interfaces.h"
#include "host/com_apartment.h"
#include "host/text.h"
#include "port/class_advice.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>

namespace host
{

namespace
{

// The folder with its final separator; "." where the path names none.
std::string FolderOf(const std::string& path)
{
    const auto end = std::find_if(path.rbegin(), path.rend(), port::IsPathSeparator);
    return end == path.rend() ? std::string(".") : std::string(path.begin(), end.base());
}

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
