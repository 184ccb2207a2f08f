#include "engine/xml_stream.h"

#include "engine/failure.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>

using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

// Notes where each name is given, and on which line the last element starts and ends.
class NameAddresses final : public engine::XmlHandler
{
public:
    void StartElement(const char* name, const Attributes& /*attributes*/) override
    {
        addresses[name].insert(name);
        startLine = Line();
    }
    std::size_t Characters(std::string_view /*text*/) override { return 0; }
    void EndElement() override
    {
        ++elements;
        endLine = Line();
    }

    std::map<std::string, std::set<const char*>> addresses;
    std::size_t elements = 0;
    std::uint64_t startLine = 0;
    std::uint64_t endLine = 0;
};

NameAddresses Read(const std::string& document)
{
    const TemporaryFolder folder;
    engine::OrderFile file(folder.Write("order.xml", document));
    NameAddresses handler;
    engine::ParseXml(file, handler);
    return handler;
}

std::string MalformedText(const std::string& document)
{
    try
    {
        Read(document);
    }
    catch (const engine::Failure& failure)
    {
        EXPECT_EQ(failure.Number(), engine::FailureNumber::Malformed);
        return failure.Text();
    }
    ADD_FAILURE() << "read";
    return {};
}

} // namespace

TEST(XmlStream, NameHasOneAddressThroughoutADocument)
{
    // Many blocks long, so that names are cut at their borders; prefixed and bare.
    std::string document = "<D xmlns:p=\"urn:p\">";
    for (int i = 0; i < 20'000; ++i)
    {
        document += i % 2 == 0 ? "<CdtTrfTxInf><Nm>x</Nm></CdtTrfTxInf>"
                               : "<p:CdtTrfTxInf><p:Nm>x</p:Nm></p:CdtTrfTxInf>";
    }
    const NameAddresses read = Read(document + "</D>");
    EXPECT_EQ(read.elements, 40'001U);
    ASSERT_EQ(read.addresses.size(), 3U);
    for (const auto& [name, addresses] : read.addresses)
    {
        EXPECT_EQ(addresses.size(), 1U) << name;
    }
}

TEST(XmlStream, LineIsThatOfTheElement)
{
    const NameAddresses read = Read("<D>\n<A>\n\n</A>\n\n</D>\n");
    EXPECT_EQ(read.startLine, 2U);
    EXPECT_EQ(read.endLine, 6U);
}

TEST(XmlStream, NamespaceThatIsNoAddressIsAName)
{
    EXPECT_EQ(Read("<D xmlns='urn: x'><p:A xmlns:p='%%'/></D>").elements, 2U);
}

TEST(XmlStream, NamespaceThatIsNoAddressHidesNoError)
{
    EXPECT_THAT(MalformedText("<D xmlns='urn: x'><A></B></D>"), HasSubstr("mismatch"));
    EXPECT_THAT(MalformedText("<D xmlns='urn: x'><A/>"), HasSubstr("cut off"));
    // The last thing that the parser tells is forgiven here, and the first is not.
    EXPECT_THAT(MalformedText("<D><p:A/><B xmlns='urn: x'/></D>"), HasSubstr("prefix p"));
    EXPECT_THAT(MalformedText("<D xmlns='urn: x'><p:A/></D>"), HasSubstr("prefix p"));
}
