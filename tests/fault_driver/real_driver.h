#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>

namespace fault_driver
{

/// The entry points of the driver that does the work.
struct RealDriver
{
    decltype(&::SQLAllocHandle) allocHandle = nullptr;
    decltype(&::SQLFreeHandle) freeHandle = nullptr;
    decltype(&::SQLFreeStmt) freeStmt = nullptr;
    decltype(&::SQLSetEnvAttr) setEnvAttr = nullptr;
    decltype(&::SQLSetConnectAttr) setConnectAttr = nullptr;
    decltype(&::SQLSetStmtAttr) setStmtAttr = nullptr;
    decltype(&::SQLDriverConnect) driverConnect = nullptr;
    decltype(&::SQLDisconnect) disconnect = nullptr;
    decltype(&::SQLEndTran) endTran = nullptr;
    decltype(&::SQLGetInfo) getInfo = nullptr;
    decltype(&::SQLExecDirect) execDirect = nullptr;
    decltype(&::SQLRowCount) rowCount = nullptr;
    decltype(&::SQLMoreResults) moreResults = nullptr;
    decltype(&::SQLNumResultCols) numResultCols = nullptr;
    decltype(&::SQLDescribeCol) describeCol = nullptr;
    decltype(&::SQLBindCol) bindCol = nullptr;
    decltype(&::SQLFetch) fetch = nullptr;
    decltype(&::SQLGetData) getData = nullptr;
    decltype(&::SQLGetDiagRec) getDiagRec = nullptr;
};

/// Loads the driver on first use and keeps it; null when it cannot be loaded or lacks a call.
const RealDriver* LoadRealDriver(const std::string& path);

} // namespace fault_driver
