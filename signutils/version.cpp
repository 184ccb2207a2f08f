#include "signutils/version.h"

const char* SignUtilsVersion()
{
    return SIGNUTILS_VERSION;
}
