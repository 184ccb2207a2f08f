#include "amounts/format_conversion.h"
#include "port/kernel.h"

#include <gtest/gtest.h>

// The message of a missing engine shows the last error as earlier calls left it. Here the
// activation does not touch it; inside the real one it may change.

namespace
{

TEST(PosixLastError, IsShownAsItWasWhenThereIsNoEngine)
{
    for (const DWORD error : {5U, 288U})
    {
        char errorText[256] = "before";
        SetLastError(error);
        EXPECT_EQ(amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, errorText),
                  0);
        EXPECT_EQ(errorText, "Initialize CFFmtRun Error : " + std::to_string(error));
    }
}

} // namespace
