#include "amounts/tveufile.h"

#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include <string>
#include <vector>

using amounts::ColumnDetails;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

namespace
{

constexpr int kVeuFourLines = 0;

const std::string kVeuOrderHeader =
    "RECORD;CORPS;CTL_CPTDEBIT;CTL_CPTCREDIT;CTL_MONTANT;CTL_DEVISE;CTL_REF_TRANS;CTL_URGENT;"
    "CTL_EXEC_DATE;BANQUE;GUICHET;COMPTE;LIBELLE;RAISONSOC;DOMICILIATION;REFERENCE;MONTANT;"
    "DEVISE";

std::vector<int> Values(const TArray<int>& columns)
{
    std::vector<int> values;
    for (int i = 0; i < columns.GetCount(); ++i)
    {
        values.push_back(*columns.GetAt(i));
    }
    return values;
}

// A work file with the profile file beside nothing else in the configuration folder. What is told
// on standard error is kept.
class VeuFile : public testing::Test
{
protected:
    TVeuFile& Open(const std::string& profile, const std::string& header = kVeuOrderHeader)
    {
        m_folder.Write("CtlVEU.INI", profile);
        return OpenWithoutProfile(header);
    }

    TVeuFile& OpenWithoutProfile(const std::string& header = kVeuOrderHeader)
    {
        const std::string path =
            m_folder.Write("order.veu.cp", header + "\r\n16\r\n\"label\"\r\n-\r\n\"1\"\r\n");
        m_file = std::make_unique<TVeuFile>(path.c_str(), kVeuFourLines);
        return *m_file;
    }

    // Runs with standard error caught and gives what was told there.
    template <typename Action>
    static std::string Told(Action&& action)
    {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    int Resolve(const char* specification, const ColumnDetails& details = {})
    {
        int column = 0;
        m_told = Told([&] { column = m_file->ResolveColumn(specification, details); });
        return column;
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_configuration{"SIGNUTILS_CONFIG", m_folder.Path().c_str()};
    std::unique_ptr<TVeuFile> m_file;
    std::string m_told;
};

TEST_F(VeuFile, ReadsRowsLikeAnyWorkFile)
{
    const TVeuFile& file = OpenWithoutProfile();
    EXPECT_EQ(file.CurrentRow().GetAt(0), "1");
    EXPECT_EQ(file.GetFirstHeader().GetCount(), 18);
}

TEST_F(VeuFile, NothingIsLoadedAtConstruction)
{
    const TVeuFile& file = Open("[cp]\r\ncp_Amount=$CTL_MONTANT\r\n");
    EXPECT_EQ(file.GetOrderColumns().amount, -1);
    EXPECT_TRUE(file.GetOrderColumns().isAmountCredit);
    EXPECT_TRUE(file.GetRemittanceColumns().isCredit);
    EXPECT_EQ(file.GetRemittanceColumns().country, -1);
    EXPECT_STREQ(file.GetCountry(), "");
    EXPECT_EQ(file.GetDisplayItems().GetCount(), 0);
    EXPECT_EQ(file.GetDisplayItems().GetCapacity(), 128);
    EXPECT_EQ(file.GetAccountColumns().GetCapacity(), 128);
    EXPECT_TRUE(file.GetDisplayHeader().IsEmpty());
}

TEST_F(VeuFile, MissingProfileFileLeavesAllDefaults)
{
    TVeuFile& file = OpenWithoutProfile();
    EXPECT_EQ(Told(
                  [&]
                  {
                      EXPECT_EQ(file.LoadRemittanceSection("rem"), 0);
                      EXPECT_EQ(file.LoadOrderSection("cp"), 0);
                      EXPECT_EQ(file.LoadDisplaySection("display"), 0);
                  }),
              "");
    EXPECT_EQ(file.GetRemittanceColumns().country, -1);
    EXPECT_EQ(file.GetOrderColumns().amount, -1);
    EXPECT_EQ(file.GetDisplayItems().GetCount(), 0);
}

TEST_F(VeuFile, MissingAndEmptySectionsLeaveAllDefaults)
{
    TVeuFile& file = Open("[empty]\r\n; a comment\r\n[cp]\r\ncp_Amount=$CTL_MONTANT\r\n");
    EXPECT_EQ(Told(
                  [&]
                  {
                      EXPECT_EQ(file.LoadRemittanceSection("empty"), 0);
                      EXPECT_EQ(file.LoadRemittanceSection("missing"), 0);
                      EXPECT_EQ(file.LoadOrderSection("empty"), 0);
                  }),
              "");
    EXPECT_EQ(file.GetOrderColumns().amount, -1);
}

TEST_F(VeuFile, AmountOfAnOrderIsColumnFour)
{
    TVeuFile& file = Open("[cp]\r\ncp_Amount=$CTL_MONTANT\r\n");
    EXPECT_EQ(Told([&] { EXPECT_EQ(file.LoadOrderSection("cp"), 0); }), "");
    EXPECT_EQ(file.GetOrderColumns().amount, 4);
}

TEST_F(VeuFile, OrderSectionReadsEveryKey)
{
    TVeuFile& file =
        Open("[cp]\r\ncp_isAmountCredit=F\r\ncp_Amount=$RECORD\r\n"
             "cp_AmountCurrency=$CORPS\r\ncp_DateExec=$CTL_CPTDEBIT\r\n"
             "cp_isBankCodeBICOrig=false\r\ncp_isAccountIBANOrig=0\r\n"
             "cp_BankCodeOrig=$CTL_CPTCREDIT\r\ncp_AccountCurrencyOrig=$CTL_MONTANT\r\n"
             "cp_AccountNumberOrig=$CTL_DEVISE\r\ncp_AccountHolderOrig=$CTL_REF_TRANS\r\n"
             "cp_isBankCodeBICRecip=true\r\ncp_isAccountIBANRecip=no\r\n"
             "cp_BankCodeRecip=$CTL_URGENT\r\ncp_AccountCurrencyRecip=$CTL_EXEC_DATE\r\n"
             "cp_AccountNumberRecip=$BANQUE\r\ncp_AccountHolderRecip=$GUICHET\r\n"
             "cp_Libelle=$COMPTE\r\n");
    EXPECT_EQ(Told([&] { file.LoadOrderSection("cp"); }), "");
    const amounts::OrderColumns& columns = file.GetOrderColumns();
    EXPECT_FALSE(columns.isAmountCredit);
    EXPECT_EQ(columns.amount, 0);
    EXPECT_EQ(columns.amountCurrency, 1);
    EXPECT_EQ(columns.executionDate, 2);
    EXPECT_FALSE(columns.isBankCodeBicOrig);
    EXPECT_FALSE(columns.isAccountIbanOrig);
    EXPECT_EQ(columns.bankCodeOrig, 3);
    EXPECT_EQ(columns.accountCurrencyOrig, 4);
    EXPECT_EQ(columns.accountNumberOrig, 5);
    EXPECT_EQ(columns.accountHolderOrig, 6);
    EXPECT_FALSE(columns.isBankCodeBicRecip) << "only a capital T is true";
    EXPECT_FALSE(columns.isAccountIbanRecip);
    EXPECT_EQ(columns.bankCodeRecip, 7);
    EXPECT_EQ(columns.accountCurrencyRecip, 8);
    EXPECT_EQ(columns.accountNumberRecip, 9);
    EXPECT_EQ(columns.accountHolderRecip, 10);
    EXPECT_EQ(columns.label, 11);
}

TEST_F(VeuFile, FlagThatBeginsWithACapitalTIsTrue)
{
    TVeuFile& file = Open("[cp]\r\ncp_isAccountIBANRecip=True\r\ncp_isAccountIBANOrig=T\r\n");
    file.LoadOrderSection("cp");
    EXPECT_TRUE(file.GetOrderColumns().isAccountIbanRecip);
    EXPECT_TRUE(file.GetOrderColumns().isAccountIbanOrig);
}

TEST_F(VeuFile, MissingAndEmptyKeysTellNothingAndGiveDefaults)
{
    TVeuFile& file = Open("[cp]\r\ncp_isAmountCredit=\r\ncp_Amount=\r\n");
    EXPECT_EQ(Told([&] { file.LoadOrderSection("cp"); }), "");
    EXPECT_TRUE(file.GetOrderColumns().isAmountCredit);
    EXPECT_EQ(file.GetOrderColumns().amount, -1);
    EXPECT_TRUE(file.GetOrderColumns().isBankCodeBicOrig);
    EXPECT_EQ(file.GetOrderColumns().label, -1);
}

TEST_F(VeuFile, RemittanceSectionReadsEveryKey)
{
    TVeuFile& file = Open("[rem]\r\nall_IsCredit=F\r\nrem_DateExecuction=$CTL_EXEC_DATE\r\n"
                          "rem_AccountNumberOrig=$COMPTE\r\nrem_isBankCodeBICOrig=F\r\n"
                          "rem_isAccountIBANOrig=F\r\nrem_BankCodeOrig=$BANQUE\r\n"
                          "rem_ReferenceRemise=#NbOrders\r\nrem_OrderParty=$RAISONSOC\r\n"
                          "rem_Emetteur=-\r\nrem_Country=~DEUTSCHLAND\r\n");
    EXPECT_EQ(Told([&] { EXPECT_EQ(file.LoadRemittanceSection("rem"), 0); }), "");
    const amounts::RemittanceColumns& columns = file.GetRemittanceColumns();
    EXPECT_FALSE(columns.isCredit);
    EXPECT_EQ(columns.executionDate, 8);
    EXPECT_EQ(columns.accountNumber, 11);
    EXPECT_FALSE(columns.isBankCodeBic);
    EXPECT_FALSE(columns.isAccountIban);
    EXPECT_EQ(columns.bankCode, 9);
    EXPECT_EQ(columns.reference, 9998);
    EXPECT_EQ(columns.orderParty, 13);
    EXPECT_EQ(columns.sender, 9996);
    EXPECT_EQ(columns.country, 9997);
    EXPECT_STREQ(file.GetCountry(), "DEU");
    EXPECT_FALSE(file.IsAccountMultiColumn());
    EXPECT_FALSE(file.IsAccountRib());
}

TEST_F(VeuFile, ExecutionDateIsReadByItsKeysOwnSpellingAlone)
{
    TVeuFile& file = Open("[rem]\r\nrem_DateExecution=$CTL_EXEC_DATE\r\nrem_Country=-\r\n");
    EXPECT_EQ(Told([&] { file.LoadRemittanceSection("rem"); }), "");
    EXPECT_EQ(file.GetRemittanceColumns().executionDate, -1);
}

TEST_F(VeuFile, AbsentCountryIsResolvedAsFrAndToldAsNotFound)
{
    TVeuFile& file = Open("[rem]\r\nall_IsCredit=T\r\n");
    EXPECT_EQ(Told([&] { file.LoadRemittanceSection("rem"); }),
              "\nError INI : col FR               not found");
    EXPECT_EQ(file.GetRemittanceColumns().country, -1);
    EXPECT_STREQ(file.GetCountry(), "");
}

TEST_F(VeuFile, CountryMayBeAColumn)
{
    TVeuFile& file = Open("[rem]\r\nrem_Country=$BANQUE\r\n");
    EXPECT_EQ(Told([&] { file.LoadRemittanceSection("rem"); }), "");
    EXPECT_EQ(file.GetRemittanceColumns().country, 9);
}

TEST_F(VeuFile, AccountMayBeMadeOfSeveralColumns)
{
    TVeuFile& file = Open("[rem]\r\nrem_AccountNumberOrig=$BANQUE,$GUICHET,$COMPTE\r\n"
                          "rem_Country=-\r\n");
    EXPECT_EQ(Told([&] { file.LoadRemittanceSection("rem"); }), "");
    EXPECT_EQ(file.GetRemittanceColumns().accountNumber, 9995);
    EXPECT_TRUE(file.IsAccountMultiColumn());
    EXPECT_THAT(Values(file.GetAccountColumns()), ElementsAre(9, 10, 11));
}

TEST_F(VeuFile, AccountAsRibSetsItsFlagAndIsToldAsNotFound)
{
    TVeuFile& file = Open("[rem]\r\nrem_AccountNumberOrig=#rib\r\nrem_Country=-\r\n");
    EXPECT_EQ(Told([&] { file.LoadRemittanceSection("rem"); }),
              "\nError INI : col #rib             not found");
    EXPECT_TRUE(file.IsAccountRib());
    EXPECT_EQ(file.GetRemittanceColumns().accountNumber, -1);
}

TEST_F(VeuFile, LoadingGoesOnAfterAColumnThatIsNotFound)
{
    TVeuFile& file = Open("[cp]\r\ncp_Amount=$NOWHERE\r\ncp_AmountCurrency=$CTL_DEVISE\r\n");
    EXPECT_EQ(Told([&] { file.LoadOrderSection("cp"); }),
              "\nError INI : col $NOWHERE         not found");
    EXPECT_EQ(file.GetOrderColumns().amount, -1);
    EXPECT_EQ(file.GetOrderColumns().amountCurrency, 5);
}

TEST_F(VeuFile, LoadingAgainForgetsTheSectionBefore)
{
    TVeuFile& file = Open("[a]\r\nrem_AccountNumberOrig=$BANQUE,$COMPTE\r\nrem_Country=~FR\r\n"
                          "rem_DisplayCol01=$BANQUE\r\n"
                          "[b]\r\nrem_Country=-\r\nrem_DisplayCol01=$COMPTE\r\n"
                          "[rib]\r\nrem_AccountNumberOrig=#RIB\r\n");
    Told([&] { file.LoadRemittanceSection("rib"); });
    EXPECT_TRUE(file.IsAccountRib());
    file.LoadRemittanceSection("a");
    EXPECT_FALSE(file.IsAccountRib());
    file.LoadDisplaySection("a");
    file.LoadRemittanceSection("b");
    file.LoadDisplaySection("b");
    EXPECT_EQ(file.GetAccountColumns().GetCount(), 0);
    EXPECT_FALSE(file.IsAccountMultiColumn());
    EXPECT_STREQ(file.GetCountry(), "");
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 1);
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->column, 11);
}

TEST_F(VeuFile, MissingSectionLeavesWhatWasLoaded)
{
    TVeuFile& file = Open("[cp]\r\ncp_Amount=$CTL_MONTANT\r\n"
                          "[display]\r\nrem_DisplayCol01=$BANQUE\r\n");
    file.LoadOrderSection("cp");
    file.LoadDisplaySection("display");
    EXPECT_EQ(file.LoadOrderSection("missing"), 0);
    EXPECT_EQ(file.LoadDisplaySection("missing"), 0);
    EXPECT_EQ(file.GetOrderColumns().amount, 4);
    EXPECT_EQ(file.GetDisplayItems().GetCount(), 1);
}

TEST_F(VeuFile, HeaderNamePresentTwiceIsItsLastColumn)
{
    OpenWithoutProfile("A;MONTANT;B;MONTANT;C");
    EXPECT_EQ(Resolve("$MONTANT"), 3);
}

TEST_F(VeuFile, HeaderNamesAreComparedCaseByCase)
{
    OpenWithoutProfile();
    EXPECT_EQ(Resolve("$montant"), -1);
    EXPECT_EQ(m_told, "\nError INI : col $montant         not found");
}

TEST_F(VeuFile, ConstantIsCopiedAndCutToItsBuffer)
{
    OpenWithoutProfile();
    char constant[4] = "???";
    ColumnDetails details;
    details.constant = constant;
    details.constantSize = sizeof constant;
    EXPECT_EQ(Resolve("~AB", details), 9997);
    EXPECT_STREQ(constant, "AB");
    EXPECT_EQ(Resolve("~ABCDEF", details), 9997);
    EXPECT_STREQ(constant, "ABC");
    EXPECT_EQ(Resolve("~ABCDEF"), 9997) << "without a buffer";
    EXPECT_EQ(m_told, "");
}

TEST_F(VeuFile, SpecialWordsHaveTheirCodes)
{
    OpenWithoutProfile();
    EXPECT_EQ(Resolve("#NbOrders"), 9998);
    EXPECT_EQ(Resolve("#TotalCurrency"), 9999);
    EXPECT_EQ(Resolve("-"), 9996);
    EXPECT_EQ(Resolve("-whatever"), 9996);
    EXPECT_EQ(m_told, "");
}

TEST_F(VeuFile, RibSetsItsFlagWhateverItsCaseAndIsNotFound)
{
    OpenWithoutProfile();
    for (const char* const word : {"#RIB", "#rib", "#Rib"})
    {
        bool rib = false;
        ColumnDetails details;
        details.rib = &rib;
        EXPECT_EQ(Resolve(word, details), -1);
        EXPECT_TRUE(rib) << word;
        EXPECT_NE(m_told, "");
    }
    EXPECT_EQ(Resolve("#RIB"), -1) << "without a flag";
    EXPECT_EQ(m_told, "\nError INI : col #RIB             not found");
}

TEST_F(VeuFile, OtherWordsAreNotFound)
{
    OpenWithoutProfile();
    for (const char* const word : {"MONTANT", "#Other", "", "$", "4"})
    {
        bool rib = false;
        ColumnDetails details;
        details.rib = &rib;
        EXPECT_EQ(Resolve(word, details), -1) << word;
        EXPECT_FALSE(rib);
        EXPECT_THAT(m_told, testing::StartsWith("\nError INI : col ")) << word;
    }
    EXPECT_EQ(Resolve("A_NAME_LONGER_THAN_SIXTEEN"), -1);
    EXPECT_EQ(m_told, "\nError INI : col A_NAME_LONGER_THAN_SIXTEEN not found");
}

TEST_F(VeuFile, ListTakesThePiecesThatNameColumns)
{
    OpenWithoutProfile();
    bool multiColumn = false;
    TArray<int> columns(8);
    const ColumnDetails details{&multiColumn, &columns, nullptr, nullptr, 0};
    EXPECT_EQ(Resolve("$BANQUE,~x,,$COMPTE, $GUICHET,$NOWHERE", details), 9995);
    EXPECT_TRUE(multiColumn);
    EXPECT_THAT(Values(columns), ElementsAre(9, 11));
    EXPECT_EQ(m_told, "\nError INI : col $NOWHERE         not found");
}

TEST_F(VeuFile, ListWithoutAPieceIsAListAllTheSame)
{
    OpenWithoutProfile();
    bool multiColumn = false;
    TArray<int> columns(8);
    const ColumnDetails details{&multiColumn, &columns, nullptr, nullptr, 0};
    EXPECT_EQ(Resolve(",", details), 9995);
    EXPECT_TRUE(multiColumn);
    EXPECT_THAT(Values(columns), IsEmpty());
    EXPECT_EQ(Resolve("~Paris, France"), 9995) << "a comma makes a list of a constant, too";
    EXPECT_EQ(m_told, "");
}

TEST_F(VeuFile, ListNeedsNoPlaceForItsColumns)
{
    OpenWithoutProfile();
    EXPECT_EQ(Resolve("$BANQUE,$COMPTE"), 9995);
    EXPECT_EQ(m_told, "");
}

TEST_F(VeuFile, SpecificationIsCutAt255Characters)
{
    OpenWithoutProfile("A;" + std::string(254, 'x'));
    EXPECT_EQ(Resolve(("$" + std::string(254, 'x') + "yyy").c_str()), 1);
    EXPECT_EQ(Resolve(("$" + std::string(254, 'x') + ",$A").c_str()), 1) << "the comma is cut off";
}

TEST_F(VeuFile, DisplaySectionGivesColumnsWithLabels)
{
    TVeuFile& file =
        Open("[display]\r\nrem_DisplayHeader=Transfers\r\nrem_DisplayHeadNB=3 lines\r\n"
             "rem_DisplayCol01=$CTL_MONTANT\r\nrem_DisplayLib01=~Amount\r\n"
             "rem_DisplayCol02=$BANQUE,$GUICHET,$COMPTE\r\n"
             "rem_DisplayLib02=$BANQUE,$COMPTE\r\n"
             "rem_DisplayCol03=#NbOrders\r\nrem_DisplayLib03=$REFERENCE\r\n"
             "rem_DisplayCol04=$LIBELLE\r\n");
    EXPECT_EQ(Told([&] { EXPECT_EQ(file.LoadDisplaySection("display"), 0); }), "");
    EXPECT_EQ(file.GetDisplayHeader(), "Transfers");
    EXPECT_EQ(file.GetDisplayHeadCount(), 3);
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 4);
    const displayItem& amount = **file.GetDisplayItems().GetAt(0);
    EXPECT_EQ(amount.column, 4);
    EXPECT_THAT(Values(amount.columns), ElementsAre(4));
    EXPECT_EQ(amount.label, "Amount");
    const displayItem& account = **file.GetDisplayItems().GetAt(1);
    EXPECT_EQ(account.column, 9995);
    EXPECT_THAT(Values(account.columns), ElementsAre(9, 10, 11));
    EXPECT_EQ(account.label, "BANQUE COMPTE");
    const displayItem& count = **file.GetDisplayItems().GetAt(2);
    EXPECT_EQ(count.column, 9998);
    EXPECT_THAT(Values(count.columns), IsEmpty());
    EXPECT_EQ(count.label, "REFERENCE");
    EXPECT_EQ((*file.GetDisplayItems().GetAt(3))->label, "") << "no label key";
}

TEST_F(VeuFile, DisplayStopsAtTheFirstMissingNumber)
{
    TVeuFile& file = Open("[display]\r\nrem_DisplayCol01=$RECORD\r\nrem_DisplayCol03=$CORPS\r\n");
    file.LoadDisplaySection("display");
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 1);
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->column, 0);
}

TEST_F(VeuFile, FirstColumnIsShownAndNamedLikeAnyOther)
{
    TVeuFile& file = Open("[display]\r\nrem_DisplayCol01=$RECORD\r\nrem_DisplayLib01=$RECORD\r\n");
    file.LoadDisplaySection("display");
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 1);
    EXPECT_THAT(Values((*file.GetDisplayItems().GetAt(0))->columns), ElementsAre(0));
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->label, "RECORD");
}

TEST_F(VeuFile, DisplayHeaderIsCutAt4095Characters)
{
    TVeuFile& file = Open("[display]\r\nrem_DisplayHeader=" + std::string(5000, 'x') + "\r\n");
    file.LoadDisplaySection("display");
    EXPECT_EQ(file.GetDisplayHeader().GetLength(), 4095U);
}

TEST_F(VeuFile, DisplayNumbersHaveTwoDigitsAndGoOnBeyond)
{
    std::string profile = "[display]\r\n";
    for (int number = 1; number <= 101; ++number)
    {
        const std::string digits = std::to_string(number);
        profile += "rem_DisplayCol" + std::string(number < 10 ? "0" : "") + digits + "=$CORPS\r\n";
    }
    TVeuFile& file = Open(profile);
    file.LoadDisplaySection("display");
    EXPECT_EQ(file.GetDisplayItems().GetCount(), 101);
}

TEST_F(VeuFile, DisplayColumnThatIsNotFoundKeepsItsPlace)
{
    TVeuFile& file = Open("[display]\r\nrem_DisplayCol01=$NOWHERE\r\nrem_DisplayLib01=~Label\r\n"
                          "rem_DisplayCol02=$RECORD\r\n");
    EXPECT_EQ(Told([&] { file.LoadDisplaySection("display"); }),
              "\nError INI : col $NOWHERE         not found");
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 2);
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->column, -1);
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->label, "Label");
}

TEST_F(VeuFile, LabelIsCutWithItsSpecification)
{
    // The specification of 255 characters has room for its '~' and 254 more.
    TVeuFile& file = Open("[display]\r\nrem_DisplayCol01=$RECORD\r\nrem_DisplayLib01=~" +
                          std::string(300, 'x') + "\r\n");
    file.LoadDisplaySection("display");
    ASSERT_EQ(file.GetDisplayItems().GetCount(), 1);
    EXPECT_EQ((*file.GetDisplayItems().GetAt(0))->label, std::string(254, 'x').c_str());
}

TEST_F(VeuFile, ProfilePathTooLongForItsPlaceReadsNothing)
{
    const ScopedEnvironment configuration("SIGNUTILS_CONFIG",
                                          m_folder.Path(std::string(300, 'x')).c_str());
    TVeuFile& file = OpenWithoutProfile();
    EXPECT_EQ(Told([&] { EXPECT_EQ(file.LoadRemittanceSection("rem"), 0); }), "");
    EXPECT_EQ(file.GetRemittanceColumns().country, -1);
}

} // namespace
