#include "host/batch/order_list.h"

#include "host/batch/terms.h"
#include "host/refusal.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace batch
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

class ListOfOrders : public testing::Test
{
protected:
    ListOfOrders()
    {
        const std::pair<const char*, const char*> common[] = {
            {"db", "Driver=SQLite3;Database=bank.db"},
            {"partner", "DUPONTSA"},
            {"service", "CCT"},
            {"client", "TRESOR"},
            {"protocol", "9"},
            {"type", "1"},
            {"signers", "Ana Ruiz"},
            {"format", "auto"}};
        for (const auto& [name, text] : common)
        {
            m_common.AddUnlessThere(name, {text, std::string("option --") + name});
        }
    }

    std::vector<Order> Read(const std::string& text)
    {
        return ReadOrderList({m_folder.Write("orders.csv", text), "argument ORDERS"}, m_common);
    }

    std::string Refused(const std::string& text)
    {
        try
        {
            Read(text);
        }
        catch (const host::UsageRefusal& refusal)
        {
            return refusal.what();
        }
        return "not refused";
    }

    TemporaryFolder m_folder;
    host::OptionValues m_common;
};

TEST_F(ListOfOrders, OfCommaSeparatedValuesGivesEachOrderItsTerms)
{
    const auto orders = Read("file,signers,order-id\n"
                             "# a remark\n"
                             "A001.xml,\"Ana Ruiz;Paul Durand\",A001\n"
                             "/in/A002.xml,,A002\n");

    ASSERT_EQ(orders.size(), 2U);
    EXPECT_EQ(std::filesystem::path(orders[0].path),
              std::filesystem::absolute(m_folder.Path("A001.xml")).make_preferred());
    EXPECT_EQ(orders[0].key, orders[0].path);
    EXPECT_EQ(orders[0].terms->Find("signers")->text, "Ana Ruiz;Paul Durand");
    EXPECT_THAT(orders[0].terms->Find("signers")->origin, HasSubstr("orders.csv, line 3, field"));
    EXPECT_EQ(orders[1].terms->Find("signers"), nullptr);
    EXPECT_EQ(orders[1].terms->Find("order-id")->text, "A002");
    EXPECT_EQ(WithCommon(*orders[1].terms, m_common).Find("signers")->text, "Ana Ruiz");
}

TEST_F(ListOfOrders, MayBeginWithRemarksAndEmptyLines)
{
    const auto orders = Read("# from Monday; sent by mail\n"
                             "\n"
                             "file,signers\n"
                             "A001.xml,Ana Ruiz\n");

    ASSERT_EQ(orders.size(), 1U);
    EXPECT_EQ(orders[0].terms->Find("signers")->text, "Ana Ruiz");
}

TEST_F(ListOfOrders, OfJsonLinesGivesEachOrderItsTerms)
{
    const auto orders = Read("{\"file\": \"A001.xml\", \"veu\": true, \"type\": 2}\n"
                             "\n"
                             "{\"file\": \"A002.xml\", \"signers\": \"Élodie\"}\r\n");

    ASSERT_EQ(orders.size(), 2U);
    EXPECT_TRUE(orders[0].terms->IsOn("veu"));
    EXPECT_EQ(orders[0].terms->Find("type")->text, "2");
    EXPECT_EQ(orders[1].terms->Find("signers")->text, "Élodie");
    EXPECT_THAT(orders[1].terms->Find("signers")->origin, HasSubstr("line 3, field signers"));
}

TEST_F(ListOfOrders, KeepsWhereTheDatabaseLiesOutOfReach)
{
    EXPECT_THAT(Refused("file,db\nA001.xml,Driver=X\n"), HasSubstr("column db: unknown column"));
    EXPECT_THAT(Refused("{\"file\": \"A\", \"hand-off\": \"/tmp\"}\n"),
                HasSubstr("line 1, field hand-off: unknown field"));
}

TEST_F(ListOfOrders, IsRefusedWithEveryLineThatIsWrong)
{
    const std::string text = Refused("file,protocol,veu\n"
                                     "A001.xml,nine,\n"
                                     "A002.xml,9\n"
                                     "A003.xml,9,yes\n"
                                     ",9,\n"
                                     "A005.xml,9,true\n"
                                     "A005.xml,9,true\n");

    EXPECT_THAT(text, AllOf(HasSubstr("line 2, field protocol: 'nine'"),
                            HasSubstr("line 3: the line has 2 fields, the first line 3"),
                            HasSubstr("line 4, field veu: 'yes' is neither true nor false"),
                            HasSubstr("line 5, field file: the path of the order file is missing"),
                            HasSubstr("line 7, field file: 'A005.xml' is the order of line 6 "
                                      "again"),
                            HasSubstr("Nothing was judged.")));
}

TEST_F(ListOfOrders, NamesNothingThatIsNeverAnOrder)
{
    for (const char* const name : {"A001.xml.veu", "A001.xml.veu.cp", "A001.xml.part",
                                   ".hidden.xml", "A001.xml.terms", "A001.xml.veu.lock"})
    {
        EXPECT_THAT(
            Refused(std::string("file\nA001.xml\n") + name + "\n"),
            AllOf(HasSubstr("line 3, field file: '" + std::string(name) + "' is never an order"),
                  HasSubstr("Leave the line out, or rename the file.")));
    }
    std::filesystem::create_directory(m_folder.Path("sub"));
    EXPECT_THAT(Refused("file\nsub\n"), HasSubstr("line 2, field file: 'sub' is a folder. Name"));
    EXPECT_THAT(Refused("{\"file\": \"sub/\"}\n"), HasSubstr("'sub/' is a folder"));
}

TEST_F(ListOfOrders, TakesAFileOnceByWhateverNameItHas)
{
    std::filesystem::create_directory(m_folder.Path("sub"));
    m_folder.Write("sub/a.xml", "order");
    std::filesystem::create_hard_link(m_folder.Path("sub/a.xml"), m_folder.Path("linked.xml"));
    for (const char* const name : {"sub/../sub/a.xml", "./sub/a.xml", "linked.xml"})
    {
        EXPECT_THAT(Refused(std::string("file\nsub/a.xml\n") + name + "\n"),
                    HasSubstr("line 3, field file: '" + std::string(name) +
                              "' is the order of line 2 again."));
    }
}

TEST_F(ListOfOrders, IsRefusedForAFormatThatIsNone)
{
    EXPECT_THAT(
        Refused("file,format\nA001.xml,CFONB/160\nA002.xml,nope\n"),
        AllOf(HasSubstr("orders.csv, line 3, field format: 'nope' is no known order format"),
              HasSubstr("Nothing was judged.")));
    // Amounts that are given need none.
    m_common.AddUnlessThere("total", {"5.00", "option --total"});
    m_common.AddUnlessThere("largest", {"5.00", "option --largest"});
    m_common.AddUnlessThere("currency", {"EUR", "option --currency"});
    EXPECT_THAT(Refused("file,format\nA002.xml,nope\n"), HasSubstr("are given as well"));
}

TEST_F(ListOfOrders, IsRefusedForReportsThatHaveNoIdentifierOfTheirOwn)
{
    m_common.AddUnlessThere("psr-service", {"STATUS", "option --psr-service"});
    m_common.AddUnlessThere("party", {"QZBKFRPP", "option --party"});
    m_common.AddUnlessThere("message-name", {"pain.001.001.03", "option --message-name"});
    m_common.AddUnlessThere("order-id", {"A", "option --order-id"});

    EXPECT_EQ(Read("file,message-id,order-id\nA001.xml,R1,A1\nA002.xml,R2,A1\n").size(), 2U);
    EXPECT_THAT(Refused("file,message-id,order-id\nA001.xml,R1,A1\nA002.xml,R1,A2\n"),
                HasSubstr("line 3, field message-id: 'R1' is the report of line 2 already"));
    EXPECT_THAT(
        Refused("file,message-id\nA001.xml,R1\n"),
        HasSubstr("line 2: option --psr-service asks for a status report: the term order-id "
                  "must be the order's own"));
    m_common.AddUnlessThere("message-id", {"R", "option --message-id"});
    EXPECT_THAT(Refused("file,order-id\nA001.xml,A1\n"), HasSubstr("the term message-id must be"));
}

TEST_F(ListOfOrders, SkipsALineOfBlanksAsAnEmptyOne)
{
    EXPECT_EQ(Read("file,signers\nA001.xml,Ana\n  \t \n\n \r\nA002.xml,Ana\n").size(), 2U);
}

TEST_F(ListOfOrders, IsRefusedForTermsThatAreMissing)
{
    host::OptionValues few;
    few.AddUnlessThere("db", *m_common.Find("db"));
    m_common = few;

    EXPECT_THAT(Refused("file,partner\nA001.xml,DUPONTSA\n"),
                AllOf(HasSubstr("orders.csv, line 2: option --service is missing")));
}

TEST_F(ListOfOrders, OfJsonLinesIsRefusedWithLineAndField)
{
    const std::string text = Refused("{\"file\": \"A001.xml\", \"total\": 1500.10}\n"
                                     "{\"file\": \"A002.xml\",\n"
                                     "[]\n"
                                     "{\"signers\": \"Ana\"}\n"
                                     "{\"file\": \"A\", \"signers\": \"A\", \"signers\": \"B\"}\n"
                                     "{\"file\": \"A\", \"signer\": \"B\"}\n");

    EXPECT_THAT(
        text,
        AllOf(HasSubstr("line 1, field total: '1500.1' cannot be taken. Write an amount in quotes"),
              HasSubstr("line 2: this is no JSON"), HasSubstr("line 3: expected one JSON object"),
              HasSubstr("line 4, field file: the path of the order file is missing"),
              HasSubstr("line 5, field signers: it stands there twice"),
              HasSubstr("line 6, field signer: unknown field. Did you mean signers?")));
}

TEST_F(ListOfOrders, WithoutAnOrderIsRefused)
{
    EXPECT_THAT(Refused(""), HasSubstr("the list names no order"));
    EXPECT_THAT(Refused("file,signers\n"), HasSubstr("the list names no order"));
}

TEST_F(ListOfOrders, WithColumnsThatCannotBeToldIsRefused)
{
    EXPECT_THAT(Refused("signers,partner\nAna,DUPONTSA\n"), HasSubstr("column file is missing"));
    EXPECT_THAT(Refused("file,file\nA,B\n"),
                HasSubstr("column file: the column stands there twice"));
    EXPECT_THAT(Refused("file,singers\nA,B\n"), HasSubstr("Did you mean signers?"));
}

} // namespace
} // namespace batch
