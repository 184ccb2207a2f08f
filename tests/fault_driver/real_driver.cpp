#include "tests/fault_driver/real_driver.h"

#include <dlfcn.h>
#include <map>

namespace fault_driver
{

namespace
{

template <typename Function>
bool Find(void* module, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(module, name));
    return function != nullptr;
}

bool FindAll(void* module, RealDriver& real)
{
    return Find(module, "SQLAllocHandle", real.allocHandle) &&
           Find(module, "SQLFreeHandle", real.freeHandle) &&
           Find(module, "SQLFreeStmt", real.freeStmt) &&
           Find(module, "SQLSetEnvAttr", real.setEnvAttr) &&
           Find(module, "SQLSetConnectAttr", real.setConnectAttr) &&
           Find(module, "SQLSetStmtAttr", real.setStmtAttr) &&
           Find(module, "SQLDriverConnect", real.driverConnect) &&
           Find(module, "SQLDisconnect", real.disconnect) &&
           Find(module, "SQLEndTran", real.endTran) && Find(module, "SQLGetInfo", real.getInfo) &&
           Find(module, "SQLExecDirect", real.execDirect) &&
           Find(module, "SQLRowCount", real.rowCount) &&
           Find(module, "SQLMoreResults", real.moreResults) &&
           Find(module, "SQLNumResultCols", real.numResultCols) &&
           Find(module, "SQLDescribeCol", real.describeCol) &&
           Find(module, "SQLBindCol", real.bindCol) && Find(module, "SQLFetch", real.fetch) &&
           Find(module, "SQLGetData", real.getData) &&
           Find(module, "SQLGetDiagRec", real.getDiagRec);
}

} // namespace

const RealDriver* LoadRealDriver(const std::string& path)
{
    static std::map<std::string, RealDriver> loaded;
    const auto known = loaded.find(path);
    if (known != loaded.end())
    {
        return &known->second;
    }
    // Stays until the process ends, as the state of this module does.
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    RealDriver real;
    if (module == nullptr || !FindAll(module, real))
    {
        return nullptr;
    }
    return &loaded.emplace(path, real).first->second;
}

} // namespace fault_driver
