#include "port/com.h"
#include "signutils/signutils_c.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

// COM refuses for reasons that no test can bring about: the program's own function is found before
// that of port/, as on POSIX alone.

namespace
{

bool g_withoutMemory = false;

} // namespace

HRESULT CoInitializeEx(void* reserved, DWORD model)
{
    using Initialise = HRESULT(void*, DWORD);
    static auto* const next =
        reinterpret_cast<Initialise*>(dlsym(RTLD_NEXT, "_Z14CoInitializeExPvj"));
    return g_withoutMemory ? E_OUTOFMEMORY : next(reserved, model);
}

namespace
{

TEST(PosixComFailure, IsToldWithItsNumber)
{
    g_withoutMemory = true;
    EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_MULTITHREADED), SIGNUTILS_FAILED);
    g_withoutMemory = false;
    EXPECT_STREQ(SignUtilsErrorText(nullptr), "COM could not be initialised (error 0x8007000E).");
}

} // namespace
