// signcheck rules validate: every problem of a rule file with line, field and remedy.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr const char* kHolder = "[[holder]]\nhuid = \"H1\"\n";
constexpr const char* kContract = "[[contract]]\ncuid = \"C1\"\npartner = \"P\"\nservice = \"S\"\n"
                                  "client = \"C\"\nprotocol = 9\nside = \"server\"\n"
                                  "terms = [ { type = 1 } ]\n";

constexpr std::pair<const char*, const char*> kGoodRule[] = {
    {"holder1 = ", "\"H1\""}, {"alone = ", "true"}, {"amount = ", "\"1.00\""}};

class RulesValidate : public testing::Test
{
protected:
    Answer Validate(const std::string& toml, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments = {"rules", "validate",
                                              m_folder.Write("rules.toml", toml)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    // The only finding of a file, as line and text; the exit status must fit its severity.
    std::string FindingOf(const std::string& toml)
    {
        const Answer answer = Validate(toml, {"--json"});
        const auto findings = answer.Json()["findings"];
        EXPECT_THAT(findings, SizeIs(1)) << findings.dump(2);
        if (findings.size() != 1)
        {
            return {};
        }
        const auto& finding = findings[0];
        EXPECT_EQ(answer.status, finding["severity"] == "warning" ? 0 : 1);
        const std::string text = "line " + finding["line"].dump() + ", " +
                                 finding["field"].get<std::string>() + ": " +
                                 finding["text"].get<std::string>();
        m_remedy = finding["remedy"].get<std::string>();
        EXPECT_NE(m_remedy, "");
        return text;
    }

    std::string OfCertificate(const std::string& fields)
    {
        return FindingOf(std::string(kHolder) + "certificates = [ { " + fields + " } ]\n");
    }

    // Of a rule that is good but for these fields.
    std::string OfRule(const std::string& fields)
    {
        std::string rule = fields;
        for (const auto& [field, value] : kGoodRule)
        {
            rule +=
                fields.find(field) == std::string::npos ? std::string(", ") + field + value : "";
        }
        return OfExactRule(rule);
    }

    std::string OfExactRule(const std::string& fields)
    {
        return FindingOf(std::string(kHolder) + kContract + "rules = [ { " + fields + " } ]\n");
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_connection{"SIGNCHECK_DB", nullptr};
    std::string m_remedy; ///< of the last finding
};

TEST_F(RulesValidate, AGoodFileHasNoProblem)
{
    const Answer answer = Validate(std::string(kHolder) + kContract +
                                   "rules = [ { holder1 = \"H1\", alone = true, "
                                   "amount = \"500.00\", level = \"file\" } ]\n");

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, testing::EndsWith("rules.toml: 1 holder, 1 contract, 1 rule; "
                                                 "0 problems, 0 warnings.\nOnly the file was "
                                                 "looked at. With --db it is compared with a "
                                                 "database, too.\n"));
    EXPECT_EQ(answer.errors, "");
}

TEST_F(RulesValidate, EveryProblemIsListedInTheOrderOfTheFile)
{
    const Answer answer = Validate("[[holder]]\nhuid = 3\noppostion = \"0\"\n[[holder]]\n"
                                   "huid = \"H1\"\npartner = \"NINECHARS\"\n");

    EXPECT_EQ(answer.status, 1);
    const auto first = answer.output.find("rules.toml, line 2, field holder.huid: expected text in "
                                          "quotes, found a whole number. Write huid = \"…\".");
    const auto second = answer.output.find("line 3, field holder.oppostion: the field is unknown.");
    const auto third = answer.output.find("line 6, field holder.partner: 'NINECHARS' has 9 "
                                          "characters and column VPNAME takes 8. Shorten it.");
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_NE(third, std::string::npos) << answer.output;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Did you mean opposition?"), HasSubstr("3 problems, 0 warnings")));
}

TEST_F(RulesValidate, TextsLongerThanTheirColumns)
{
    const std::string tooLong(256, 'x');
    EXPECT_THAT(OfCertificate("name = \"" + tooLong + "\""),
                HasSubstr("256 characters and column CN takes 255"));
    EXPECT_THAT(OfCertificate("name = \"A\", serial = \"" + tooLong + "\""),
                HasSubstr("column SERIAL takes 64"));
    EXPECT_THAT(FindingOf(std::string(kHolder) + "last-name = \"" + tooLong + "\"\n"),
                HasSubstr("line 3, holder.last-name:"));
    EXPECT_THAT(OfRule("amount = \"" + std::string(33, '0') + "\""),
                HasSubstr("column AMOUNT takes 32"));
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"" + std::string(65, 'H') + "\"\n"),
                HasSubstr("column HUID takes 64"));
}

TEST_F(RulesValidate, LettersBeyondSixteenBitsCountTwice)
{
    std::string letters;
    for (int count = 0; count < 128; ++count)
    {
        letters += "𠮷";
    }
    EXPECT_THAT(OfCertificate("name = \"" + letters + "\""), HasSubstr("256 characters"));
}

TEST_F(RulesValidate, NamesEqualInTheirFirstEightCharacters)
{
    const std::string other = "[[contract]]\ncuid = \"C2\"\npartner = \"DUPONTSA2\"\n"
                              "service = \"S\"\nclient = \"C\"\nprotocol = 9\nside = \"server\"\n"
                              "terms = [ { type = 1 } ]\n";
    std::string first = kContract;
    first.replace(first.find("\"P\""), 3, "\"DUPONTSA\"");

    const Answer answer = Validate(first + other);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("line 11, field contract.partner: 'DUPONTSA2' has 9 characters"),
                      HasSubstr("line 11, field contract.partner: 'DUPONTSA2' is the same as "
                                "'DUPONTSA' of line 3 in its first 8 characters")));
}

TEST_F(RulesValidate, ApostrophesWhereLookUpsTakeThemAsTheyAre)
{
    EXPECT_THAT(OfCertificate("name = \"Siobhán O'Brien\""),
                AllOf(HasSubstr("line 3, holder.certificates.name:"), HasSubstr("apostrophe")));
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"H'1\"\n"), HasSubstr("apostrophe"));
    std::string contract = kContract;
    contract.replace(contract.find("\"C\""), 3, "\"C'\"");
    EXPECT_THAT(FindingOf(contract),
                AllOf(HasSubstr("line 5, contract.client:"), HasSubstr("apostrophe")));
}

TEST_F(RulesValidate, AnApostropheInAPersonsNameIsFine)
{
    EXPECT_EQ(Validate(std::string(kHolder) + "last-name = \"O'Brien\"\n").status, 0);
}

TEST_F(RulesValidate, CertificateNamesThatNoSignerCanHave)
{
    EXPECT_THAT(OfCertificate("name = \"A;B\""), HasSubstr("semicolon"));
    EXPECT_THAT(OfCertificate("name = \"A \""), HasSubstr("blank at an end"));
    EXPECT_THAT(OfCertificate("name = \"\""), HasSubstr("it is empty"));
    EXPECT_THAT(OfCertificate("serial = \"1\""), HasSubstr("certificates.name: it is missing"));
    EXPECT_THAT(OfCertificate("name = \"A\\u0000B\""), HasSubstr("NUL"));
}

TEST_F(RulesValidate, CertificatesTwice)
{
    EXPECT_THAT(OfCertificate("name = \"Élodie\" }, { name = \"éLODIE\""),
                HasSubstr("has the certificate 'éLODIE' in line 3 already"));
    EXPECT_THAT(FindingOf(std::string(kHolder) + "certificates = [ { name = \"A\" } ]\n" +
                          "[[holder]]\nhuid = \"H2\"\ncertificates = [ { name = \"A\" } ]\n"),
                HasSubstr("the certificate 'A' is also that of holder 'H1' in line 3"));
}

TEST_F(RulesValidate, HoldersAndContractsTwice)
{
    EXPECT_THAT(FindingOf(std::string(kHolder) + kHolder),
                HasSubstr("line 4, holder.huid: the holder 'H1' stands in line 2 already"));
    const Answer answer = Validate(std::string(kContract) + kContract);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("line 10, field contract.cuid: the contract 'C1' stands in line 2"),
                      HasSubstr("line 16, field contract.terms: WARNING: line 8 has terms for the "
                                "same partner, service, client, protocol, side and type")));
}

TEST_F(RulesValidate, KeysThatDifferInLetterCaseOnly)
{
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"É1\"\n[[holder]]\nhuid = \"é1\"\n"),
                HasSubstr("line 4, holder.huid: 'é1' differs from holder 'É1' of line 2 in letter "
                          "case only"));
    std::string other = kContract;
    other.replace(other.find("C1"), 2, "c1");
    other.replace(other.find("type = 1"), 8, "type = 2");
    EXPECT_THAT(FindingOf(kContract + other),
                HasSubstr("line 10, contract.cuid: 'c1' differs from contract 'C1' of line 2"));
}

TEST_F(RulesValidate, NamesThatDifferInLetterCaseOnly)
{
    std::string other = kContract;
    other.replace(other.find("C1"), 2, "C2");
    other.replace(other.find("\"S\""), 3, "\"s\"");
    EXPECT_THAT(FindingOf(kContract + other),
                HasSubstr("line 12, contract.service: 's' differs from 'S' of line 4 in letter "
                          "case only: a check takes them for two"));
    other.replace(other.find("\"s\""), 3, "\"C\"");
    EXPECT_EQ(Validate(kContract + other).status, 0); // a client's name is no service's
}

TEST_F(RulesValidate, AnUnknownHolderInARule)
{
    EXPECT_THAT(OfRule("holder1 = \"H2\""),
                HasSubstr("line 11, contract.rules.holder1: the holder 'H2' is not known"));
    EXPECT_THAT(OfRule("holder1 = \"H1\", holder2 = \"H\""), HasSubstr("rules.holder2"));
}

TEST_F(RulesValidate, AmountsThatACheckReadsOtherwise)
{
    EXPECT_THAT(OfRule("amount = \"10,000\""),
                HasSubstr("contract.rules.amount: '10,000' can be taken for '10.00' and for "
                          "'10000.00'; a check reads it as '10.00'"));
    EXPECT_THAT(OfRule("amount = \"1.234.567\""),
                HasSubstr("says '1234567.00', but a check reads it as '1234.567'."));
    EXPECT_EQ(m_remedy, "Write \"1234567.00\".");
    EXPECT_THAT(OfRule("amount = \"1e5\""), HasSubstr("is no amount; a check reads it as '15.00'"));
    EXPECT_THAT(OfExactRule("holder1 = 1, alone = true, amount = \"1.00\""),
                HasSubstr("rules.holder1: expected text in quotes, found a whole number"));
    EXPECT_THAT(OfRule("amount = 1000.5"),
                HasSubstr("expected text in quotes, found a number with decimals"));
}

TEST_F(RulesValidate, AmountsBeyondWhatACheckWeighsNameTheMostThatItDoes)
{
    for (const char* const amount : {"99999999999999999", "922337203686", "922337203685,48"})
    {
        EXPECT_THAT(OfRule("amount = \"" + std::string(amount) + "\""), HasSubstr(amount));
        EXPECT_EQ(m_remedy,
                  "Write at most \"922337203685.4775\": a check can weigh no amount beyond.");
    }
    OfRule("amount = \"-99999999999999999\"");
    EXPECT_THAT(m_remedy, HasSubstr("Write at least \"-922337203685.4775\""));
    const std::string proposed = "rules = [ { holder1 = \"H1\", alone = true, level = \"file\", "
                                 "amount = \"922337203685.4775\" } ]\n";
    EXPECT_EQ(Validate(std::string(kHolder) + kContract + proposed).status, 0);
}

TEST_F(RulesValidate, AmountsOfMoreThanSixDecimalsNameTheSixThatACheckReads)
{
    OfRule("amount = \"1500,1234569\"");
    EXPECT_EQ(m_remedy, "Write \"1500.123456\": a check reads six decimals.");
    EXPECT_THAT(OfRule("amount = \"0.12345678\""),
                HasSubstr("says '0.12345678', but a check reads it as '1.234567'"));
    EXPECT_EQ(m_remedy, "Write \"0.123456\": a check reads six decimals.");
}

TEST_F(RulesValidate, WrongTypesAndUnknownWords)
{
    EXPECT_THAT(OfRule("alone = \"yes\""), HasSubstr("expected true or false, found text"));
    EXPECT_THAT(OfRule("level = \"files\""), HasSubstr("'files' is none of its words"));
    EXPECT_THAT(OfRule("level = 3000000000"), HasSubstr("beyond what its column takes"));
    EXPECT_THAT(OfCertificate("name = \"A\", expires = \"2027-02-29\""),
                HasSubstr("'2027-02-29' is no date"));
    EXPECT_THAT(OfCertificate("name = \"A\", expires = 5"),
                HasSubstr("expected a date, found a whole number"));
    EXPECT_THAT(FindingOf("holder = 1\n"), HasSubstr("expected a list of tables"));
    EXPECT_THAT(FindingOf("[[holders]]\nhuid = \"H1\"\n"), HasSubstr("holders: the field is"));
    EXPECT_THAT(FindingOf(std::string(kHolder) + "certificates = [ 1 ]\n"),
                HasSubstr("expected a table"));
}

TEST_F(RulesValidate, ContractsThatAreNotWhole)
{
    EXPECT_THAT(FindingOf("[[contract]]\ncuid = \"C1\"\n"),
                HasSubstr("it has neither terms nor entry"));
    EXPECT_THAT(FindingOf("[[contract]]\ncuid = \"C1\"\nrules = [ {} ]\n"),
                HasSubstr("has rules but no terms"));
    std::string contract = kContract;
    contract.erase(contract.find("client"), 13);
    EXPECT_THAT(FindingOf(contract), HasSubstr("line 7, contract.terms.client: it is missing"));
    EXPECT_THAT(FindingOf("[[contract]]\npartner = \"P\"\nservice = \"S\"\nclient = \"C\"\n"
                          "protocol = 9\nside = 1\nentry = {}\n"),
                HasSubstr("contract.cuid: it is missing"));
    EXPECT_THAT(FindingOf("[[contract]]\npartner = \"P\"\nservice = \"S\"\nclient = \"C\"\n"
                          "protocol = 9\nside = 1\nterms = [ { type = 1 }, { type = 2 } ]\n"),
                HasSubstr("awaits its identifier, and it has several"));
}

TEST_F(RulesValidate, DoubtsAreWarnings)
{
    EXPECT_THAT(FindingOf(std::string(kHolder) + "opposition = \"yes\"\n"),
                HasSubstr("'yes' is no number; a check reads it as not in opposition"));
    std::string contract = kContract;
    contract.replace(contract.find("\"server\""), 8, "2");
    EXPECT_THAT(FindingOf(contract), HasSubstr("side 2 is neither"));
}

TEST_F(RulesValidate, LettersWithoutAPlaceWhereACheckReadsWindows1252)
{
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"Б\"\n"),
                AllOf(HasSubstr("'Б'"), HasSubstr("Windows-1252")));
    EXPECT_EQ(Validate(std::string(kHolder) + "last-name = \"Дмитрий\"\n").status, 0);
}

TEST_F(RulesValidate, ATextThatIsNoTomlIsToldWithItsLine)
{
    EXPECT_THAT(FindingOf(std::string(kHolder) + "partner = \n"), HasSubstr("line 3, : "));
    EXPECT_THAT(FindingOf("huid = \"\xC3\x28\"\n"), HasSubstr("line 1"));
}

TEST_F(RulesValidate, AKeyOfManyPartsIsRefusedBeforeItExhaustsTheStack)
{
    std::string key = "a";
    for (int part = 0; part < 200000; ++part)
    {
        key += ".a";
    }

    EXPECT_THAT(FindingOf(std::string(kHolder) + key + " = 1\n"),
                HasSubstr("line 3, : a key has more than 16 parts"));
    EXPECT_THAT(FindingOf("[" + key + "]\n"), HasSubstr("line 1, : a key has more"));
}

TEST_F(RulesValidate, AnEmptyFileIsToldThatItIs)
{
    EXPECT_THAT(FindingOf(""), HasSubstr("line 1, : the file has neither holders nor contracts"));
    EXPECT_THAT(FindingOf("# nobody\n"), HasSubstr("neither holders nor contracts"));
}

TEST_F(RulesValidate, SingleBracketsAboveAnItemOfAList)
{
    const Answer answer = Validate("\n[holder]\nhuid = \"H1\"\n");
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("line 2, field holder: [holder] is one table, and a list is "
                                "expected. Did you mean [[holder]]?"),
                      HasSubstr("1 problem, 0 warnings")));
    const std::string terms = "\n[contract.terms]\ntype = 1\n";
    std::string contract = kContract;
    contract.replace(contract.find("terms ="), std::string::npos, terms);
    EXPECT_THAT(Validate(contract).output, HasSubstr("Did you mean [[contract.terms]]?"));
    EXPECT_THAT(FindingOf("holder = { huid = \"H1\" }\n"),
                HasSubstr("expected a list of tables, found a table"));
}

TEST_F(RulesValidate, ATextInAnotherEncoding)
{
    EXPECT_THAT(FindingOf(std::string(kHolder) + "last-name = \"Lef\xE8vre\"\n"),
                HasSubstr("line 3, : the line is no UTF-8 text"));
    EXPECT_THAT(FindingOf(std::string("\xFF\xFE[\0[\0", 6)),
                HasSubstr("line 1, : the line is no UTF-8 text"));
    EXPECT_THAT(FindingOf("\n\n# \xE8"), HasSubstr("line 3, : the line is no UTF-8 text"));
}

TEST_F(RulesValidate, BlanksAtTheEndsOfTexts)
{
    EXPECT_THAT(FindingOf(std::string(kHolder) + "last-name = \"Ruiz \"\n"),
                HasSubstr("line 3, holder.last-name: 'Ruiz ' has a blank at an end"));
    EXPECT_THAT(FindingOf("[[holder]]\nhuid = \"\\tH1\"\n"), HasSubstr("line 2, holder.huid: "));
    std::string contract = kContract;
    contract.replace(contract.find("\"S\""), 3, "\"S \"");
    EXPECT_THAT(FindingOf(contract), HasSubstr("line 4, contract.service: 'S ' has a blank"));
    contract = kContract;
    contract.replace(contract.find("C1"), 2, "C1 ");
    EXPECT_THAT(FindingOf(contract), HasSubstr("line 2, contract.cuid: 'C1 ' has a blank"));
}

TEST_F(RulesValidate, RulesThatLimitNothing)
{
    EXPECT_THAT(OfRule("level = 7"),
                HasSubstr("line 11, contract.rules.level: level 7 limits no amount"));
    EXPECT_THAT(OfExactRule("holder1 = \"H1\", alone = true, level = 2"),
                HasSubstr("level 2 limits no amount"));
}

TEST_F(RulesValidate, RulesThatRefuseEverything)
{
    EXPECT_THAT(OfExactRule("holder1 = \"H1\", alone = true"),
                HasSubstr("line 11, contract.rules.amount: it is missing; a check takes that for "
                          "0.00"));
    EXPECT_THAT(OfRule("amount = \"-5.00\", level = \"largest-order\""),
                HasSubstr("contract.rules.amount: '-5.00' is below zero"));
}

TEST_F(RulesValidate, RulesThatConcernNobody)
{
    EXPECT_THAT(OfExactRule("amount = \"1.00\""),
                HasSubstr("line 11, contract.rules: the rule names no holder"));
    EXPECT_THAT(OfExactRule("holder1 = \"\", holder2 = \"\", amount = \"1.00\""),
                HasSubstr("the rule names no holder"));
    EXPECT_THAT(OfExactRule("holder2 = \"H1\", alone = true, amount = \"1.00\""),
                HasSubstr("contract.rules.holder2: a rule for one alone looks for its holder1"));
    const std::string second = "rules = [ { holder2 = \"H1\", amount = \"1.00\" } ]\n";
    EXPECT_THAT(Validate(std::string(kHolder) + kContract + second).output,
                HasSubstr("0 problems, 0 warnings"));
}

TEST_F(RulesValidate, RulesBelowTermsThatAdmitEverybodyAreNotDoubted)
{
    std::string contract = kContract;
    contract.replace(contract.find("type = 1"), 8, "type = 1, all-holders = true");
    EXPECT_THAT(Validate(contract + "rules = [ {} ]\n").output,
                HasSubstr("0 problems, 0 warnings"));
}

TEST_F(RulesValidate, AFileThatIsNotThereIsRefused)
{
    EXPECT_EQ(RunSigncheck({"rules", "validate", m_folder.Path("none.toml")}).status, 64);
    EXPECT_EQ(RunSigncheck({"rules", "validate", m_folder.Path()}).status, 64);
    EXPECT_THAT(RunSigncheck({"rules", "validate"}).errors,
                HasSubstr("argument FILE is missing. Give the path of a rule file"));
}

} // namespace
} // namespace testing_support
