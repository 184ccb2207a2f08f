#include "signutils/version.h"

const char* SIGNUTILS_CALL SignUtilsVersion()
{
    return SIGNUTILS_VERSION;
}
