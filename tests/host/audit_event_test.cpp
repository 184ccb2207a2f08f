#include "host/audit_event.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;

TEST(AuditText, IsTakenApart)
{
    const auto event = host::ReadAuditText(
        "[SIGN_RULES]\r\nMode:Server\r\nProtocol:EBICS\r\nEntité:DUPONTSA\r\nClient:TRESOR  \r\n"
        "Service:CCT     \r\nIdFichier=-1\r\nOrderId=A001      \r\n\r\n"
        "CHECK SIGNATURES RULES FAILED\r\nfirst\r\nsecond\r\n");

    EXPECT_EQ(event.mode, "Server");
    EXPECT_EQ(event.protocol, "EBICS");
    EXPECT_EQ(event.partner, "DUPONTSA");
    EXPECT_EQ(event.client, "TRESOR");
    EXPECT_EQ(event.service, "CCT");
    EXPECT_EQ(event.fileId, "-1");
    EXPECT_EQ(event.orderId, "A001");
    EXPECT_EQ(event.message, "CHECK SIGNATURES RULES FAILED\r\nfirst\r\nsecond\r\n");
}

TEST(AuditText, OfAnotherSourceIsAMessageAsAWhole)
{
    const auto event = host::ReadAuditText("something else\r\n\r\nbelow");

    EXPECT_EQ(event.partner, "");
    EXPECT_EQ(event.message, "something else\r\n\r\nbelow");
}

TEST(Lines, AreWithoutLineEndsAndEmptyOnes)
{
    EXPECT_THAT(host::LinesOf("a\r\n\r\nb\nc"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(host::LinesOf(""), ElementsAre());
}

} // namespace
