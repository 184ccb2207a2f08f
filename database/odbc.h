#pragma once

// The only header that includes ODBC's. port/kernel.h stands first: on Windows ODBC's headers need
// windows.h, elsewhere they define BOOL as a macro, which a later port/kernel.h would not survive.

#include "port/kernel.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
