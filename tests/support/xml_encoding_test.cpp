#include "support/xml_encoding.h"

#include <gtest/gtest.h>

using support::DeclaredEncoding;
using support::EncodingOf;
using support::XmlEncoding;

namespace
{

TEST(XmlEncoding, DeclarationTellsTheName)
{
    EXPECT_EQ(DeclaredEncoding("<?xml version=\"1.0\" encoding='windows-1252' ?><a/>"),
              "WINDOWS-1252");
    EXPECT_EQ(DeclaredEncoding("\xEF\xBB\xBF<?xml version='1.0' encoding = \"utf-8\"?>"), "UTF-8");
    for (const char* const without :
         {"", "<a encoding='x'/>", "<?xml version=\"1.0\"?><a encoding='x'/>",
          "<?xml version=\"1.0\" encoding", "<?xml version=\"1.0\" encoding='x",
          "<?xml version=\"1.0\" encoding=x?>", "<?xml version=\"1.0\" noencoding='x'?>"})
    {
        EXPECT_EQ(DeclaredEncoding(without), "") << without;
    }
}

TEST(XmlEncoding, NameTellsWhoReadsIt)
{
    EXPECT_EQ(EncodingOf(""), XmlEncoding::Parsers);
    EXPECT_EQ(EncodingOf("ISO-8859-15"), XmlEncoding::Parsers);
    EXPECT_EQ(EncodingOf("WINDOWS-1252"), XmlEncoding::Windows1252);
    EXPECT_EQ(EncodingOf("EUC-JP"), XmlEncoding::Other);
}

} // namespace
