#include "engine/convert.h"
#include "engine/failure.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using engine::Convert;
using engine::Failure;
using engine::Work;
using testing::HasSubstr;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

namespace
{

std::string OrderIn(const std::string& encoding, const std::string& name)
{
    return "<?xml version=\"1.0\" encoding=\"" + encoding +
           "\"?><Document><CstmrCdtTrfInitn><GrpHdr><NbOfTxs>1</NbOfTxs></GrpHdr><PmtInf>"
           "<CdtTrfTxInf><Amt><InstdAmt Ccy=\"EUR\">1.00</InstdAmt></Amt><Cdtr><Nm>" +
           name + "</Nm></Cdtr></CdtTrfTxInf></PmtInf></CstmrCdtTrfInitn></Document>";
}

/// The orders' work file of a conversion.
std::string Converted(const std::string& order)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", order);
    Convert(Work::Pain001, path, path + ".veu");
    return ReadWholeFile(path + ".veu.cp");
}

TEST(XmlEncoding, EveryByteOfWindows1252KeepsItsPlace)
{
    for (const char* const name : {"windows-1252", "Windows-1252", "cp1252"})
    {
        std::string letters;
        for (int byte = 0x80; byte <= 0xFF; ++byte)
        {
            letters += static_cast<char>(byte);
        }
        // A name is cut to 70 letters.
        for (std::size_t start = 0; start < letters.size(); start += 32)
        {
            const std::string part = "N" + letters.substr(start, 32) + "N";
            EXPECT_THAT(Converted(OrderIn(name, part)), HasSubstr(part)) << name << " " << start;
        }
    }
}

TEST(XmlEncoding, BytesOfTheOtherEncodingsBecomeWindows1252)
{
    EXPECT_THAT(Converted(OrderIn("ISO-8859-1", "N\xE9N")), HasSubstr("N\xE9N"));
    EXPECT_THAT(Converted(OrderIn("ISO-8859-15", "N\xA4N")), HasSubstr("N\x80N"));
    EXPECT_THAT(Converted(OrderIn("utf-8", "N\xE2\x82\xACN")), HasSubstr("N\x80N"));
    EXPECT_THAT(Converted(OrderIn("us-ascii", "NN")), HasSubstr("NN"));
}

TEST(XmlEncoding, WhatNotEveryBuildReadsIsRefused)
{
    for (const char* const name : {"windows-1250", "IBM037", "EUC-JP", "ISO-8859-2", "nonsense"})
    {
        try
        {
            Converted(OrderIn(name, "N"));
            ADD_FAILURE() << name << " was read";
        }
        catch (const Failure& failure)
        {
            EXPECT_EQ(failure.Number(), engine::FailureNumber::Malformed);
            EXPECT_THAT(failure.Text(), HasSubstr("is not read; use UTF-8"));
        }
    }
}

} // namespace
