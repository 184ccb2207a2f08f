#include "database/secrets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace
{

using database::IsSecretKey;
using database::SecretSettingsIn;
using database::WithoutSecrets;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Secrets, AreKnownByTheirKeyInAnyCase)
{
    for (const char* key : {"PWD", "pwd", "Password", "PASSWD", "NewPwd", "sslpassword",
                            "TLSKeyPwd", "SSL_PASSPHRASE", "AccessToken", "KeyStoreSecret"})
    {
        EXPECT_TRUE(IsSecretKey(key)) << key;
    }
    for (const char* key : {"DRIVER", "UID", "Database", "Server", "Port", ""})
    {
        EXPECT_FALSE(IsSecretKey(key)) << key;
    }
}

TEST(Secrets, AreFoundWhereverASettingStands)
{
    EXPECT_THAT(SecretSettingsIn("options='-c x' password = geheim sslmode=off"),
                ElementsAre("geheim"));
    EXPECT_THAT(SecretSettingsIn("DRIVER=X;PWD={a;b}}c};Token=\"t u\";UID=u"),
                ElementsAre("a;b}}c", "t u"));
    EXPECT_THAT(SecretSettingsIn("no password was supplied, user=bank"), IsEmpty());
    EXPECT_THAT(SecretSettingsIn("=x"), IsEmpty());
    EXPECT_THAT(SecretSettingsIn("PWD="), ElementsAre(""));
}

struct Message
{
    const char* name;
    const char* text;
    const char* shown;
};

void PrintTo(const Message& each, std::ostream* stream)
{
    *stream << each.name;
}

const Message kMessages[] = {
    {"WithoutASecret", "login failed for bank", "login failed for bank"},
    {"Alone", "s3cret", "***"},
    {"SeveralTimes", "s3cret, s3cret and s3crets3cret", "***, *** and ******"},
    {"InsideAWord", "xs3crety", "x***y"},
    {"LongestFirst", "s3cretlonger s3cret", "*** ***"},
    {"ShortOnesOutsideSettingsStay", "ab is in cab", "ab is in cab"},
    {"ShortOnesInSettings", "cannot use \"UID=u;PWD=ab;X=1\"", "cannot use \"UID=u;PWD=***;X=1\""},
    {"UnknownOnesInSettings", "Password = other;", "Password = ***;"},
    {"BracesStay", "pwd={a;b}}c};Port=1", "pwd={***};Port=1"},
    {"OpenBrace", "pwd={abc", "pwd={***"},
    {"OpenQuote", "pwd='ab c", "pwd='***"},
    {"EmptySetting", "pwd=;x=1", "pwd=***;x=1"},
    {"CutByTheDriver", "cannot connect with s3cre", "cannot connect with ***"},
    {"CutSoEarlyThatItSaysNothing", "cannot connect with s3c", "cannot connect with s3c"},
    {"Empty", "", ""},
};

class SecretMessage : public testing::TestWithParam<Message>
{
};

TEST_P(SecretMessage, IsShownWithoutIt)
{
    EXPECT_EQ(WithoutSecrets(GetParam().text, {"s3cret", "ab", "s3cretlonger", ""}),
              GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Texts, SecretMessage, testing::ValuesIn(kMessages),
                         [](const auto& each) { return std::string(each.param.name); });

// What is left of "s\u00E9ntin\u20ACl", a password of letters beyond ASCII, in the code of a
// driver.
const Message kConverted[] = {
    {"AsItWasGiven", "no luck with \"s\xE9ntin\x80l\"", "no luck with \"***\""},
    {"AsUtf8", "no luck with \"s\xC3\xA9ntin\xE2\x82\xACl\"", "no luck with \"***\""},
    {"CutToItsLowBytes", "no luck with \"s\xE9ntin\xACl\"", "no luck with \"***\""},
    {"QuestionMarks", "no luck with \"s?ntin?l\"", "no luck with \"***\""},
    {"QuestionMarksForBytes", "no luck with \"s??ntin???l\"", "no luck with \"***\""},
    {"HalfOfThemConverted", "no luck with \"s\xC3\xA9ntin\xE2?\xACl\"", "no luck with \"***\""},
    {"Twice", "s?ntin?l;s\xE9ntin\x80l", "***;***"},
    {"CutByTheDriver", "no luck with \"s\xC3\xA9ntin\xE2", "no luck with \"***"},
    {"CutAtOnce", "no luck with \"s??n", "no luck with \"s??n"},
    {"AsASetting", "PWD=s?ntin?l;UID=bank", "PWD=***;UID=bank"},
    {"AnotherWord", "no luck with \"santinel\"", "no luck with \"santinel\""},
    {"AnotherAccentIsHiddenToo", "no luck with \"s\xE8ntin\x80l\"", "no luck with \"***\""},
};

class ConvertedSecret : public testing::TestWithParam<Message>
{
};

TEST_P(ConvertedSecret, IsShownWithoutIt)
{
    EXPECT_EQ(WithoutSecrets(GetParam().text, {"s\xE9ntin\x80l"}), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Texts, ConvertedSecret, testing::ValuesIn(kConverted),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(Secrets, OfManyStrangeLettersTakeNoTimeToLookFor)
{
    const std::string secret(60, '\xE9');
    const std::string text(512, '?');

    EXPECT_EQ(WithoutSecrets(text + "x", {secret + "y"}), text + "x");
}

} // namespace
