#include "services/guard_pipe.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace
{

std::string WhatBecomesOf(void (*body)())
{
    std::string seen;
    const bool ended = services::GuardPipe(
        body, [&](const TPipeException& raised) { seen += raised.GetMessageText(); },
        [&] { seen += "other"; });
    return seen + (ended ? ", ended" : ", raised");
}

TEST(GuardPipe, PassesEachExceptionToItsHandler)
{
    EXPECT_EQ(WhatBecomesOf([] {}), ", ended");
    EXPECT_EQ(WhatBecomesOf([] { throw TPipeException("store"); }), "store, raised");
    EXPECT_EQ(WhatBecomesOf([] { throw std::runtime_error("x"); }), "other, raised");
    EXPECT_EQ(WhatBecomesOf([] { throw 1; }), "other, raised");
}

} // namespace
