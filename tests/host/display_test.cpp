// signcheck display: the orders of an order file, laid out as CtlVEU.INI says.

#include "port/files.h"
#include "tests/host/order_files.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Display : public OrderFilesTest
{
protected:
    // A configuration of these sections in a folder of its own.
    std::string Profile(const std::string& text) const
    {
        std::filesystem::create_directories(m_profiles.Path("config"));
        return m_profiles.Write("config/CtlVEU.INI", text);
    }

    Answer Show(const std::string& order, const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments = {"display", order};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    // With the configuration of Profile.
    Answer ShowBy(const std::string& profile, const std::string& order,
                  const std::vector<std::string>& more = {}) const
    {
        Profile(profile);
        const ScopedEnvironment config("SIGNUTILS_CONFIG", m_profiles.Path("config").c_str());
        return Show(order, more);
    }

    TemporaryFolder m_profiles;
};

const std::string kSections = "[remittance]\nrem_Country=~FR\n[order]\ncp_Amount=$CTL_MONTANT\n";
const std::string kRemittanceDisplay =
    "[remittance display]\nrem_DisplayHeader=GROUP\nrem_DisplayCol01=$REF_REMISE\n"
    "rem_DisplayLib01=~Reference\n";
const std::string kOrderDisplay =
    "[order display]\nrem_DisplayHeader=PAYMENTS\nrem_DisplayCol01=$CTL_MONTANT\n"
    "rem_DisplayLib01=~Amount\n";

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

// Letters, not bytes: continuation bytes of UTF-8 do not count.
std::size_t Letters(const std::string& utf8)
{
    std::size_t count = 0;
    for (const char byte : utf8)
    {
        count += (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U ? 0 : 1;
    }
    return count;
}

TEST_F(Display, ShowsEachRemittanceWithItsOrders)
{
    const std::string order =
        Transfers({Group("G1", {"EUR 10.00", "EUR 20.00"}), Group("G2", {"USD 5.50"})});
    const std::string ruler(120, '-');

    const Answer answer = Show(order);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.errors, "");
    // clang-format off
    EXPECT_EQ(answer.output,
        "\n" + ruler + "\n"
        "  FILE : " + order + "\n" +
        ruler + "\n"
        "\n"
        "REMITTANCE\n"
        "  CODE : REF_REMISE           | RAISONSOC            | GUICHET COMPTE       | DATE_EXEC            | \n"
        "  LIB  : Remittance           | Ordering party       | Own account          | Execution date       | \n"
        "         G1                   | Ateliers Durand      | FR1420041…0013M02606 | 20261125             | \n"
        "  CODE : CTL_REF_REMISE       | BANQUE               | #NbOrders            | #TotalCurrency       | \n"
        "  LIB  : Message              | Own bank             | Orders               | Total                | \n"
        "         MSG-1                | BNPAFRPP             | 2                    | 30.00 EUR            | \n"
        "\n"
        "ORDERS\n"
        "  CODE : CTL_MONTANT CTL_DEV… | RAISONSOC            | GUICHET COMPTE       | REFERENCE            | \n"
        "  LIB  : Amount               | Counterparty         | Account              | Reference            | \n" +
        ruler + "\n"
        "      1  10.00 EUR            | Maison Lefèvre       | DE0212030…0000202051 | REF-10.00            | \n"
        "      2  20.00 EUR            | Maison Lefèvre       | DE0212030…0000202051 | REF-20.00            | \n"
        "\n"
        "REMITTANCE\n"
        "  CODE : REF_REMISE           | RAISONSOC            | GUICHET COMPTE       | DATE_EXEC            | \n"
        "  LIB  : Remittance           | Ordering party       | Own account          | Execution date       | \n"
        "         G2                   | Ateliers Durand      | FR1420041…0013M02606 | 20261125             | \n"
        "  CODE : CTL_REF_REMISE       | BANQUE               | #NbOrders            | #TotalCurrency       | \n"
        "  LIB  : Message              | Own bank             | Orders               | Total                | \n"
        "         MSG-1                | BNPAFRPP             | 1                    | 5.50 USD             | \n"
        "\n"
        "ORDERS\n"
        "  CODE : CTL_MONTANT CTL_DEV… | RAISONSOC            | GUICHET COMPTE       | REFERENCE            | \n"
        "  LIB  : Amount               | Counterparty         | Account              | Reference            | \n" +
        ruler + "\n"
        "      3  5.50 USD             | Maison Lefèvre       | DE0212030…0000202051 | REF-5.50             | \n");
    // clang-format on
}

TEST_F(Display, IsReadableAt120ColumnsInEveryFormat)
{
    for (const char* const name :
         {"pain001_v09.xml", "pain008_v02.xml", "cfonb160_remittances.txt", "cfonb160_bills.txt",
          "cfonb320_several_currencies.txt", "mt101_several.txt"})
    {
        const Answer answer = Show(Corpus(name));
        EXPECT_EQ(answer.errors, "") << name;
        for (const std::string& line : Lines(answer.output))
        {
            // The path stands by itself.
            EXPECT_TRUE(Letters(line) <= 120 || line.starts_with("  FILE : ")) << name << line;
        }
    }
}

TEST_F(Display, EveryKeyOfTheShippedProfileIsFoundInEveryFormat)
{
    for (const char* const name : {"pain001_v03.xml", "pain008_v01.xml", "cfonb160_transfers.txt",
                                   "cfonb320_one_currency.txt", "mt101_bare.txt"})
    {
        const Answer answer = Show(Corpus(name), {"--json"});
        EXPECT_EQ(answer.errors, "") << name;
        const auto remittance = answer.Json()["remittances"][0];
        for (const char* const key : {"executionDate", "accountNumber", "bankCode", "reference",
                                      "orderParty", "sender", "country"})
        {
            EXPECT_TRUE(remittance.contains(key)) << name << ": " << key;
        }
        for (const char* const key : {"amount", "currency", "executionDate", "bankCodeRecip",
                                      "accountNumberRecip", "accountHolderRecip", "label"})
        {
            EXPECT_TRUE(remittance["orders"][0].contains(key)) << name << ": " << key;
        }
    }
}

TEST_F(Display, JsonTellsWhatEachColumnMeansAndWhatTheTextShows)
{
    const std::string order = Transfers({Group("G1", {"EUR 10.00", "USD 20.00"})});

    const Answer answer = Show(order, {"--json"});

    EXPECT_EQ(answer.errors, "");
    EXPECT_EQ(
        answer.Json(),
        nlohmann::json::parse(
            R"({
        "file": ")" +
            order + R"(",
        "format": "ISO20022/pain.001",
        "profile": )" +
            nlohmann::json(port::JoinPath(SIGNUTILS_SOURCES "/amounts", "CtlVEU.INI")).dump() + R"(,
        "remittanceSwitches": {"isCredit": true, "isBankCodeBic": true, "isAccountIban": true},
        "orderSwitches": {"isAmountCredit": true, "isBankCodeBicOrig": true,
                          "isAccountIbanOrig": true, "isBankCodeBicRecip": true,
                          "isAccountIbanRecip": true},
        "remittanceLabels": ["Remittance", "Ordering party", "Own account", "Execution date",
                             "Message", "Own bank", "Orders", "Total"],
        "orderLabels": ["Amount", "Counterparty", "Account", "Reference"],
        "remittances": [{
            "executionDate": "20261125",
            "bankCode": "BNPAFRPP",
            "reference": "G1",
            "orderParty": "Ateliers Durand",
            "sender": "",
            "accountNumber": "FR1420041010050500013M02606",
            "country": "FR",
            "totals": [
                {"total": 10.00, "currency": "EUR", "orders": 1,
                 "shown": ["G1", "Ateliers Durand", "FR1420041010050500013M02606", "20261125",
                           "MSG-1", "BNPAFRPP", "1", "10.00 EUR"]},
                {"total": 20.00, "currency": "USD", "orders": 1,
                 "shown": ["G1", "Ateliers Durand", "FR1420041010050500013M02606", "20261125",
                           "MSG-1", "BNPAFRPP", "1", "20.00 USD"]}],
            "orders": [
                {"number": 1, "amount": 10.00, "currency": "EUR", "executionDate": "20261125",
                 "accountNumberOrig": "FR1420041010050500013M02606", "bankCodeRecip": "AGRIFRPP",
                 "accountNumberRecip": "DE02120300000000202051",
                 "accountHolderRecip": "Maison Lefèvre", "label": "Facture 12",
                 "shown": ["10.00 EUR", "Maison Lefèvre", "DE02120300000000202051", "REF-10.00"]},
                {"number": 2, "amount": 20.00, "currency": "USD", "executionDate": "20261125",
                 "accountNumberOrig": "FR1420041010050500013M02606", "bankCodeRecip": "AGRIFRPP",
                 "accountNumberRecip": "DE02120300000000202051",
                 "accountHolderRecip": "Maison Lefèvre", "label": "Facture 12",
                 "shown": ["20.00 USD", "Maison Lefèvre", "DE02120300000000202051",
                           "REF-20.00"]}]}],
        "errors": []})"));
}

TEST_F(Display, SectionOfAFormatTakesThePlaceOfTheGeneralOne)
{
    const auto debits = Show(Corpus("pain008_v02.xml"), {"--json"}).Json();
    EXPECT_EQ(debits["remittanceSwitches"]["isCredit"], false);
    EXPECT_EQ(debits["orderSwitches"]["isAmountCredit"], false);

    const auto national = Show(Corpus("cfonb160_transfers.txt"), {"--json"}).Json();
    EXPECT_EQ(national["orderSwitches"]["isAccountIbanRecip"], false);
    EXPECT_FALSE(national["remittances"][0]["orders"][0].contains("accountNumberOrig"));

    const std::string special = "[order display ISO20022/pain.001]\nrem_DisplayHeader=TRANSFERS\n"
                                "rem_DisplayCol01=$RAISONSOC\nrem_DisplayLib01=~Payee\n";
    const Answer answer = ShowBy(kSections + kRemittanceDisplay + kOrderDisplay + special,
                                 Transfers({Group("G1", {"EUR 10.00"})}));
    EXPECT_THAT(answer.output, AllOf(HasSubstr("\nTRANSFERS\n"), HasSubstr("  LIB  : Payee "),
                                     Not(HasSubstr("PAYMENTS"))));
}

TEST_F(Display, ErrorsOfTheOrderFileStandBehindTheOrders)
{
    const Answer answer = Show(Transfers({Group("G1", {"EUR 10.00", "EUR 2.001"})}));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("      1  10.00 EUR "));
    EXPECT_THAT(
        answer.output,
        EndsWith("\n\n ERROR \n  Record 1.2, error 12: Amount 2.001 has more decimals than EUR "
                 "and is rounded up\n"));
}

TEST_F(Display, FileWithoutARemittanceShowsItsNameAndErrorsAlone)
{
    const std::string order = Corpus("pain001_no_group.xml");
    const std::string ruler = "\n" + std::string(120, '-');

    const Answer answer = Show(order);

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, ruler + "\n  FILE : " + order + ruler +
                                 "\n\n ERROR \n  Line 4, error 43: The file holds no order\n");
    EXPECT_TRUE(
        Show(m_folder.Path("pain001_no_group.xml"), {"--json"}).Json()["remittances"].empty());
}

TEST_F(Display, ValueThatDoesNotFitShowsThatSomethingIsMissing)
{
    const std::string order = Transfers({Group("G1", {"EUR 999999999999999999.00"})});

    const Answer answer = Show(order);

    EXPECT_THAT(answer.output, HasSubstr("      1  999999999999999999.… | "));
}

TEST_F(Display, ConfiguredColumnsLabelsAndTitleAreShown)
{
    const std::string profile = kSections + kRemittanceDisplay +
                                "[order display]\n"
                                "rem_DisplayHeader=PAYMENTS\n"
                                "rem_DisplayHeadNB=2\n"
                                "rem_DisplayCol01=$RAISONSOC,$LIBELLE\n"
                                "rem_DisplayLib01=$RAISONSOC,$LIBELLE\n"
                                "rem_DisplayCol02=-\n"
                                "rem_DisplayLib02=~Nothing\n"
                                "rem_DisplayCol03=$CTL_DEVISE\n"
                                "rem_DisplayLib03=~Currency\n"
                                "rem_DisplayCol05=$CTL_MONTANT\n"
                                "rem_DisplayLib05=~Behind a gap\n";

    const Answer answer = ShowBy(profile, Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, EndsWith("PAYMENTS\n"
                                        "  CODE : RAISONSOC LIBELLE    |                      | \n"
                                        "  LIB  : RAISONSOC LIBELLE    | Nothing              | \n"
                                        "  CODE : CTL_DEVISE           | \n"
                                        "  LIB  : Currency             | \n" +
                                        std::string(120, '-') +
                                        "\n"
                                        "      1  Maison Lefèvre Fact… |                      | \n"
                                        "         EUR                  | \n"));
}

TEST_F(Display, LabelsAreWindows1252)
{
    const Answer answer =
        ShowBy(kSections + kRemittanceDisplay +
                   "[order display]\nrem_DisplayCol01=$RAISONSOC\nrem_DisplayLib01=~B\xE9n\xE9"
                   "ficiaire\n",
               Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_THAT(answer.output, HasSubstr("  LIB  : Bénéficiaire         | "));
}

TEST_F(Display, MissingProfileIsNamedWithTheRemedy)
{
    const ScopedEnvironment config("SIGNUTILS_CONFIG", m_profiles.Path("none").c_str());

    const Answer answer = Show(Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_EQ(answer.status, 3);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors,
                AllOf(StartsWith("signcheck: order display: there is no file '" +
                                 port::JoinPath(m_profiles.Path("none"), "CtlVEU.INI") + "'"),
                      HasSubstr("comes with signcheck"), HasSubstr("SIGNUTILS_CONFIG")));
    EXPECT_THAT(Names(), ElementsAre("order.xml"));
}

TEST_F(Display, MissingSectionIsNamedWithTheRemedy)
{
    for (const std::string section : {"remittance", "order", "remittance display", "order display"})
    {
        std::string profile = kSections + kRemittanceDisplay + kOrderDisplay;
        profile.replace(profile.find("[" + section + "]"), section.size() + 2, "[other]");

        const Answer answer = ShowBy(profile, Transfers({Group("G1", {"EUR 10.00"})}));

        EXPECT_EQ(answer.status, 3) << section;
        EXPECT_EQ(answer.output, "");
        EXPECT_THAT(answer.errors,
                    AllOf(HasSubstr(port::JoinPath(m_profiles.Path("config"), "CtlVEU.INI")),
                          HasSubstr("has no section [" + section + "], or an empty one"),
                          HasSubstr("[" + section + " ISO20022/pain.001]"), HasSubstr("Add it.")));
    }
}

TEST_F(Display, ColumnThatIsNotThereIsNamed)
{
    for (const std::string column : {"$NOWHERE", "#Nothing", "~Constant", "$NOWHERE,$NOT"})
    {
        const Answer answer = ShowBy(kSections + kRemittanceDisplay + kOrderDisplay +
                                         "rem_DisplayCol02=" + column + "\nrem_DisplayLib02=~X\n",
                                     Transfers({Group("G1", {"EUR 10.00"})}));

        EXPECT_EQ(answer.status, 3) << column;
        EXPECT_EQ(answer.output, "") << column;
        EXPECT_THAT(answer.errors, AllOf(HasSubstr("\nsigncheck: order display: "),
                                         HasSubstr("section [order display]: key rem_DisplayCol02 "
                                                   "names no column of the work file")));
        EXPECT_THAT(Names(), ElementsAre("order.xml"));
    }
}

TEST_F(Display, ColumnWithoutALabelIsNamed)
{
    const Answer answer =
        ShowBy(kSections + kRemittanceDisplay + kOrderDisplay + "rem_DisplayCol02=$LIBELLE\n",
               Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("\nError CLI : col and lib mismatch!\n"),
                                     HasSubstr("key rem_DisplayLib02 gives no label")));
}

TEST_F(Display, SectionWithoutAColumnIsNamed)
{
    const Answer answer =
        ShowBy(kSections + kRemittanceDisplay + "[order display]\nrem_DisplayHeader=PAYMENTS\n",
               Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("section [order display]: key rem_DisplayCol01 is missing "
                                         "or empty"));
}

TEST_F(Display, ProfileOfAPathThatIsTooLongIsNamed)
{
    const std::string folder = m_profiles.Path(std::string(120, 'a') + "/" + std::string(120, 'b'));
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(SIGNUTILS_SOURCES "/amounts/CtlVEU.INI", folder + "/CtlVEU.INI");
    const ScopedEnvironment config("SIGNUTILS_CONFIG", folder.c_str());

    const Answer answer = Show(Transfers({Group("G1", {"EUR 10.00"})}));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("Put the file into a folder whose path is shorter"));
}

TEST_F(Display, WithoutASettingTheProfileBesideTheLibrariesIsRead)
{
    if (std::filesystem::exists("/etc/signutils/CtlVEU.INI"))
    {
        GTEST_SKIP() << "this machine has a configuration of its own";
    }
    const ScopedEnvironment config("SIGNUTILS_CONFIG", nullptr);

    const Answer answer = Show(Transfers({Group("G1", {"EUR 10.00"})}), {"--json"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const std::filesystem::path profile = answer.Json()["profile"].get<std::string>();
    EXPECT_EQ(ReadWholeFile(profile.string()),
              ReadWholeFile(SIGNUTILS_SOURCES "/amounts/CtlVEU.INI"));
}

TEST_F(Display, ControlCharactersOfAnOrderFileDoNotReachTheTerminal)
{
    const std::string order =
        m_folder.Write("order.txt", ":20:REF\x1B[2J1\r\n:28D:1/1\r\n:30:261125\r\n:21:ORD\r\n"
                                    ":32B:EUR1,\r\n:59:/ACC\r\nName\x9B 2J\r\n:71A:SHA\r\n");

    const Answer answer = Show(order, {"--format", "SWIFT/MT101"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, AllOf(Not(HasSubstr("\x1B")), Not(HasSubstr("\xC2\x9B"))));
}

} // namespace
} // namespace testing_support
