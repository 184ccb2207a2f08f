#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using namespace testing_support;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace
{

std::wstring Catalogue(unsigned int messageNumber)
{
    TSimpleStringW text;
    text.LoadStringA(messageNumber);
    return text.SafeGetString();
}

std::string NarrowCatalogue(unsigned int messageNumber)
{
    TSimpleString text;
    text.LoadStringA(messageNumber);
    return text.SafeGetString();
}

class CheckDriver : public SessionTest
{
protected:
    void PrepareRefusal(SignUtils& session)
    {
        Prepare(session);
        session.SetAmountInfo(1000.01, 1.00, "EUR");
        session.SetPSRWarning("STATUS");
    }

    std::wstring Only(const std::wstring& column)
    {
        const auto rows = m_database.Query(L"SELECT " + column + L" FROM HST_SIGNRULES");
        EXPECT_EQ(rows.size(), 1U);
        return rows.empty() ? L"" : rows[0][0].value_or(L"(null)");
    }
};

TEST_F(CheckDriver, SuccessIsRecordedAndJournalledWithoutAReport)
{
    SignUtils session;
    Prepare(session);
    session.SetPSRWarning("STATUS");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(Only(L"STATUT"), L"1");
    EXPECT_EQ(Only(L"FILENAME"), L"order.xml");
    EXPECT_EQ(Only(L"CNS"), L"Ana Ruiz");
    EXPECT_EQ(Only(L"ORDERID"), L"ORDER0001");
    EXPECT_EQ(Only(L"IDFICVFS"), L"7");
    EXPECT_EQ(Only(L"SIGNER1"), L"Ana Ruiz");
    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 1U);
    EXPECT_EQ(journal[0].level, L"0");
    EXPECT_THAT(MessageOf(journal[0]), StartsWith(L"CHECK SIGNATURES RULES SUCCESS\r\n"));
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
    EXPECT_TRUE(session.GetExtraInfo().IsEmpty());
}

TEST_F(CheckDriver, NoRuleWritesNoReport)
{
    SignUtils session;
    Prepare(session);
    session.SetPSRWarning("STATUS");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Nobody"), kNoRule);
    EXPECT_EQ(Only(L"STATUT"), L"0");
    ASSERT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_EQ(ReadJournal(m_database)[0].level, L"1");
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
}

TEST_F(CheckDriver, RefusalIsAnsweredWithAReportInTheStore)
{
    SignUtils session;
    PrepareRefusal(session);

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_EQ(Only(L"STATUT"), L"2");
    const std::string report = OnlyReport();
    EXPECT_EQ(report, session.GetPSRWarning().SafeGetString());
    EXPECT_THAT(report, HasSubstr("   <MsgId>MSG-1</MsgId>\n"));
    EXPECT_THAT(report, HasSubstr("<BkPtyId>BANKFRPP</BkPtyId>"));
    EXPECT_THAT(report, HasSubstr("   <OrgnlMsgId>ORDER0001</OrgnlMsgId>\n"
                                  "   <OrgnlMsgNmId>pain.001.001.03</OrgnlMsgNmId>\n"
                                  "   <GrpSts>RJCT</GrpSts>\n"
                                  "   <StsRsnInf>\n"
                                  "      <StsRsn>\n"
                                  "         <Cd>AM02</Cd>\n"
                                  "      </StsRsn>\n"
                                  "      <AddtlStsRsnInf>"));
    EXPECT_THAT(FilesBelow(HandOffFolder()), ::testing::Contains(StartsWith("STATUS/PARTNER1/")));
}

TEST_F(CheckDriver, HandedOnReportIsNamedInTheExtraInfoAndTheJournal)
{
    SignUtils session;
    PrepareRefusal(session);
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    const std::string info =
        "PSR Generated in STATUS=" + std::to_string(session.GetLastCheck().reportFileId);
    EXPECT_STREQ(session.GetExtraInfo().SafeGetString(), info.c_str());
    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_THAT(MessageOf(journal[0]), StartsWith(L"CHECK SIGNATURES RULES FAILED\r\n"));
    EXPECT_EQ(journal[0].level, L"2");
    EXPECT_EQ(MessageOf(journal[1]), std::wstring(info.begin(), info.end()));
    EXPECT_EQ(journal[1].level, L"0");
}

TEST_F(CheckDriver, FileIdentifier42IsShownAs42)
{
    SignUtils session;
    PrepareRefusal(session);
    TSimpleString filler("x");
    tag_Rc rc = {};
    unsigned long fileId = 0;
    while (fileId < 41)
    {
        ASSERT_EQ(
            session.AddPaymentStatusReport(filler, "psr", "STATUS", "PARTNER1", "", rc, &fileId),
            0U);
    }
    ASSERT_EQ(fileId, 41U);
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    EXPECT_STREQ(session.GetExtraInfo().SafeGetString(), "PSR Generated in STATUS=42");
    EXPECT_EQ(MessageOf(ReadJournal(m_database).at(1)), L"PSR Generated in STATUS=42");
}

TEST_F(CheckDriver, RefusalWithoutAReportServiceJournalsOnlyTheRules)
{
    SignUtils session;
    PrepareRefusal(session);
    session.SetPSRWarning("");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
    EXPECT_EQ(session.GetLastCheck().report, ReportState::NotDue);
}

TEST_F(CheckDriver, GivenAmountsLeaveNumberAndSumOutOfTheReport)
{
    SignUtils session;
    PrepareRefusal(session);
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    EXPECT_THAT(OnlyReport(), Not(HasSubstr("OrgnlNbOfTxs")));
    EXPECT_THAT(OnlyReport(), Not(HasSubstr("OrgnlCtrlSum")));
}

TEST_F(CheckDriver, ReportGoesToTheTargetOfTheContract)
{
    SignUtils session;
    PrepareRefusal(session);
    const std::string target = m_folder.Path("elsewhere");
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, target.c_str());

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_THAT(FilesBelow(target), ::testing::Contains(StartsWith("STATUS/PARTNER1/")));
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
}

// Reports carry their texts as they stand, on purpose; whoever reads them must expect this.
TEST_F(CheckDriver, MarkupInTheNamesOfASignerIsMarkupInTheReport)
{
    const std::wstring name = L"Eve</AddtlStsRsnInf><Forged>";
    Bank(m_database)
        .With(Holder(L"H2").Named(L"Eve", L"A&B").Certificate(name).Blocked())
        .With(Contract(L"C2").AloneBy(L"H2").UpTo(L"1000.00"));
    SignUtils session;
    Prepare(session);
    session.SetPSRWarning("STATUS");

    EXPECT_EQ(session.CheckSignRules("order.xml", name.c_str()), kRefused);
    EXPECT_THAT(OnlyReport(), HasSubstr("A&B Eve/Eve</AddtlStsRsnInf><Forged>"));
}

TEST_F(CheckDriver, ReportIsUtf8InTheStoreInTheSessionAndInTheTrace)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    PrepareRefusal(session);
    session.SetMessageInfo("SOCI\xC9T\xC9", "ORDER0001", "pain.001.001.03", "10 \x80");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    const std::string report = OnlyReport();
    EXPECT_THAT(report, HasSubstr("<BkPtyId>SOCI\xC3\x89T\xC3\x89</BkPtyId>"));
    EXPECT_THAT(report, HasSubstr("<MsgId>10 \xE2\x82\xAC</MsgId>"));
    EXPECT_EQ(report, session.GetPSRWarning().SafeGetString());
    EXPECT_THAT(trace.Close(), HasSubstr("<BkPtyId>SOCI\xC3\x89T\xC3\x89</BkPtyId>"));
}

TEST_F(CheckDriver, TracesFileSignersAndHandOffInOrder)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    PrepareRefusal(session);
    session.SetModeVeu(); // two signers are then judged, and refused by the profile
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz;Zo\u00e9"), kRefused);
    const std::string info = session.GetExtraInfo().SafeGetString();
    const std::string text = trace.Close();

    std::size_t position = 0;
    for (const std::string& expected :
         {std::string("CHECK SIGNATURES RULES"), std::string("FileName"), std::string("Signers"),
          std::string("SIGNERS"), std::string("GENERATE PSR"), std::string("<?xml version"),
          std::string("PREPFILE STATUS REPORT"), info, std::string("******* AUDIT")})
    {
        position = text.find(expected, position);
        ASSERT_NE(position, std::string::npos) << expected << " in\n" << text;
        position += expected.size();
    }
    EXPECT_TRUE(HasTraceLine(text, "FileName", "order.xml"));
    EXPECT_TRUE(HasTraceLine(text, "Signers", "Ana Ruiz;Zo\xC3\xA9"));
    EXPECT_TRUE(HasTraceLine(text, "info", info));
}

TEST_F(CheckDriver, UnknownAmountsAreTracedAndTheRulesJudgedWithNone)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    Prepare(session);
    session.SetFormatInfo("", "pain.001", "");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(Only(L"STATUT"), L"1");
    EXPECT_EQ(std::stod(Only(L"TOTAL")), 0.0);
    EXPECT_EQ(std::stod(Only(L"MAXORDER")), 0.0);
    EXPECT_STREQ(session.GetLastCheck().reasonCode.SafeGetString(), "NARR");
    EXPECT_EQ(session.GetLastCheck().reasonText.SafeGetString(), Catalogue(1816));
    const std::string text = trace.Close();
    EXPECT_THAT(text, HasSubstr("GET MAX AMOUNT AUTHORIZED"));
    EXPECT_TRUE(HasTraceLine(text, "Error", NarrowCatalogue(287)));
}

TEST_F(CheckDriver, UnknownAmountsReasonIsReplacedByThatOfTheRules)
{
    Bank(m_database)
        .With(Holder(L"H2").Named(L"Bo", L"Lind").Certificate(L"Bo Lind").Blocked())
        .With(Contract(L"C2").AloneBy(L"H2").UpTo(L"1000.00"));
    SignUtils session;
    PrepareRefusal(session);
    session.SetFormatInfo("ISO20022", "pain.001", "");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Bo Lind"), kRefused);
    EXPECT_THAT(OnlyReport(), HasSubstr("<Cd>AM02</Cd>"));
}

TEST_F(CheckDriver, UnknownAmountsReasonIsKeptWhereTheRulesWereNotJudged)
{
    SignUtils session;
    PrepareRefusal(session);
    session.SetConnexionString("");
    session.SetFormatInfo("", "", "");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_THAT(OnlyReport(), HasSubstr("         <Cd>NARR</Cd>\n"));
    EXPECT_THAT(OnlyReport(),
                HasSubstr("      <AddtlStsRsnInf>" + NarrowCatalogue(1816) + "</AddtlStsRsnInf>"));
}

TEST_F(CheckDriver, HandOffThatFailsIsJournalledAsAnErrorAndChangesNoVerdict)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    PrepareRefusal(session);
    const std::string file = m_folder.Write("no folder", "a file stands where the store should");
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, file.c_str());

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_EQ(journal[1].level, L"1");
    EXPECT_EQ(MessageOf(journal[1]), Catalogue(10735));
    EXPECT_NE(Catalogue(10735), L"");
    EXPECT_TRUE(session.GetExtraInfo().IsEmpty());
    EXPECT_THAT(session.GetPSRWarning().SafeGetString(), HasSubstr("<GrpSts>RJCT</GrpSts>"));
    EXPECT_EQ(session.GetLastCheck().report, ReportState::NotHandedOn);
    EXPECT_EQ(session.GetLastCheck().reportFileId, 0U);
    EXPECT_TRUE(HasTraceLine(trace.Close(), "AddPaymentStatusReport Error", "Function error"));
}

TEST_F(CheckDriver, FailedHandOffIsJournalledWithoutATraceToo)
{
    SignUtils session;
    PrepareRefusal(session);
    const std::string file = m_folder.Write("no folder", "x");
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, file.c_str());
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    EXPECT_EQ(MessageOf(ReadJournal(m_database).at(1)), Catalogue(10735));
}

TEST_F(CheckDriver, ExtraInfoKeepsTheCheckBeforeWhenNoReportIsHandedOn)
{
    SignUtils session;
    PrepareRefusal(session);
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    const std::string info = session.GetExtraInfo().SafeGetString();
    ASSERT_THAT(info, StartsWith("PSR Generated in STATUS="));

    session.SetPSRWarning("");
    EXPECT_EQ(session.CheckSignRules("second.xml", L""), kRefused);
    EXPECT_STREQ(session.GetExtraInfo().SafeGetString(), info.c_str());
}

TEST_F(CheckDriver, CheckWithoutAConnectionTextAnswersWithAnEmptyReason)
{
    SignUtils session;
    PrepareRefusal(session);
    session.SetConnexionString("");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_THAT(OnlyReport(), HasSubstr("   <GrpSts>RJCT</GrpSts>\n"
                                        "   <StsRsnInf>\n"
                                        "   </StsRsnInf>\n"
                                        "  </OrgnlGrpInfAndSts>\n"));
    EXPECT_FALSE(session.GetLastCheck().ran);
    EXPECT_TRUE(m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES").empty());
    EXPECT_TRUE(ReadJournal(m_database).empty());
}

TEST_F(CheckDriver, CheckWithoutAConnectionAnswersWithAnEmptyReason)
{
    SignUtils session;
    PrepareRefusal(session);
    session.SetConnexionString("Driver=no such driver");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_THAT(OnlyReport(), HasSubstr("   <StsRsnInf>\n   </StsRsnInf>\n"));
    EXPECT_FALSE(session.GetLastCheck().ran);
    EXPECT_FALSE(session.GetLastCheck().problem.IsEmpty());
}

TEST_F(CheckDriver, NullFileNameAndSignersAreJudgedAsEmptyOnes)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    Prepare(session);

    EXPECT_EQ(session.CheckSignRules(nullptr, nullptr), kNoRule);
    EXPECT_EQ(Only(L"FILENAME"), L"");
    EXPECT_EQ(Only(L"CNS"), L"");
}

TEST_F(CheckDriver, NullFileNameWithAmountsFromTheFileIsAFailedConversion)
{
    SignUtils session;
    Prepare(session);
    session.SetFormatInfo("ISO20022", "pain.001", "");

    EXPECT_EQ(session.CheckSignRules(nullptr, L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(session.GetLastCheck().amountsProblem.SafeGetString(), NarrowCatalogue(287));
}

TEST_F(CheckDriver, SignersOfOnlySeparatorsAreAVerdict)
{
    SignUtils session;
    Prepare(session);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"; ;;"), kNoRule);
    EXPECT_TRUE(session.GetLastCheck().ran);
}

TEST_F(CheckDriver, DistributedSignaturesArriveOneByOne)
{
    Bank(m_database)
        .With(Holder(L"H2").Named(L"Bo", L"Lind").Certificate(L"Bo Lind"))
        .With(Holder(L"H3").Named(L"Cy", L"Noor").Certificate(L"Cy Noor"))
        .With(Contract(L"C2").By(L"H2", L"H3").UpTo(L"1000.00").DoubleSignature());
    SignUtils whole;
    Prepare(whole);
    EXPECT_EQ(whole.CheckSignRules("order.xml", L"Bo Lind"), kRefused);

    SignUtils distributed;
    Prepare(distributed);
    distributed.SetModeVeu();
    EXPECT_EQ(distributed.CheckSignRules("order.xml", L"Bo Lind"), kSuccess);
}

TEST_F(CheckDriver, ServerSideAndRequesterSideHaveContractsOfTheirOwn)
{
    SignUtils session;
    Prepare(session, 0);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kNoRule);
}

TEST_F(CheckDriver, RulesAloneWriteTheCallersReasons)
{
    SignUtils session;
    Prepare(session);
    session.SetPSRWarning("STATUS");
    TSimpleString reasonCode;
    TSimpleStringW reasonText;

    EXPECT_EQ(session.CheckSignRulesFor(reasonCode, reasonText, L"Ana Ruiz", "order.xml", 1000.01,
                                        1.00, "EUR"),
              kRefused);
    EXPECT_STREQ(reasonCode.SafeGetString(), "AM02");
    EXPECT_FALSE(reasonText.IsEmpty());
    EXPECT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
}

TEST_F(CheckDriver, RulesAloneLeaveTheCallersReasonsOnSuccess)
{
    SignUtils session;
    Prepare(session);
    TSimpleString reasonCode("KEPT");
    TSimpleStringW reasonText(L"kept");

    EXPECT_EQ(session.CheckSignRulesFor(reasonCode, reasonText, L"Ana Ruiz", "order.xml", 1.00,
                                        1.00, nullptr),
              kSuccess);
    EXPECT_STREQ(reasonCode.SafeGetString(), "KEPT");
    EXPECT_STREQ(reasonText.SafeGetString(), L"kept");
}

TEST_F(CheckDriver, LookUpsAnswerZeroBeforeACheckAndFindTheHolderAfterIt)
{
    SignUtils session;
    Prepare(session);
    wchar_t certificate[256] = L"Ana Ruiz";
    wchar_t first[256] = L"";
    wchar_t last[256] = L"";
    EXPECT_EQ(session.GetSignerNames(certificate, first, last), 0);

    session.CheckSignRules("order.xml", L"Ana Ruiz");
    EXPECT_EQ(session.GetSignerNames(certificate, first, last), 1);
    EXPECT_STREQ(first, L"Ana");
    EXPECT_STREQ(last, L"Ruiz");

    TArray<signerInfo> signers(4);
    signerInfo signer;
    signer.certificate = L"Ana Ruiz";
    signers.Add(signer);
    int notOpposition = 0;
    EXPECT_EQ(session.GetSignerInfos("H1", notOpposition, certificate, first, last, &signers), 1);
    EXPECT_EQ(notOpposition, 1);
    EXPECT_STREQ(signers.GetAt(0)->lastName.SafeGetString(), L"Ruiz");
}

} // namespace
