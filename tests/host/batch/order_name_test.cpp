#include "host/batch/order_name.h"

#include <gtest/gtest.h>

namespace batch
{
namespace
{

TEST(OrderName, NamesOfWorkFilesAndLocksAreNeverOrders)
{
    for (const char* const name :
         {"A001.xml.veu", "A001.xml.veu.bp", "A001.xml.veu.cp", "A001.xml.veu.cp2",
          "A001.xml.veu.tot", "A001.xml.veu.err", "A001.xml.veu.lock", "A001.xml.VEU.BP",
          "A001.xml.veu.bp.0123456789abcdef.part", "A001.xml.veu.0123456789abcdef.part"})
    {
        EXPECT_EQ(KindOfName(name), NameKind::WorkFile) << name;
        EXPECT_EQ(OrderOfWorkFile(name), "A001.xml") << name;
    }
}

TEST(OrderName, HiddenUnfinishedAndTermsAreNoOrders)
{
    for (const char* const name : {".signcheck-progress", ".A001.xml", "A001.xml.part", "A001.TMP",
                                   "A001.xml.filepart", "A001.xml.terms", "A001.xml.Terms"})
    {
        EXPECT_EQ(KindOfName(name), NameKind::Other) << name;
        EXPECT_FALSE(OrderOfWorkFile(name)) << name;
    }
}

TEST(OrderName, NamesThatOnlyLookSimilarAreOrders)
{
    for (const char* const name : {"A001.xml", "A001", "neveu.xml", "A001.veux", "A001.veu.xml",
                                   "veu", "part", "A001.veu.bp.old", "terms.xml"})
    {
        EXPECT_EQ(KindOfName(name), NameKind::Order) << name;
    }
}

} // namespace
} // namespace batch
