#include "engine/convert.h"
#include "tests/engine/order_texts.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

// Order files that are cut or hold what does not belong there and can still be converted: the
// orders that are there count, and what is wrong is told with its place.

using engine::Work;
using engine_tests::FailureOf;
using engine_tests::RecordsWithoutLineEnds;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

struct DamagedCase
{
    const char* name;
    Work work;
    std::string bytes;
    std::vector<std::string> errors; // position and number of each error row
    std::vector<std::string> amounts;
    const char* says; // in an error row
};

void PrintTo(const DamagedCase& damaged, std::ostream* stream)
{
    *stream << damaged.name;
}

std::string UpTo(const std::string& bytes, const std::string& mark)
{
    return bytes.substr(0, bytes.find(mark));
}

std::string WithNulAt(std::string bytes, const std::string& mark)
{
    bytes[bytes.find(mark)] = '\0';
    return bytes;
}

// Records of 160 characters, the order being the second.
const std::string kTransfer = RecordsWithoutLineEnds(160);
constexpr std::size_t kTransferAmount = 160 + 102;

// A header and an order of 100.00 EUR.
const std::string kInternational = "03PI" + std::string(304, ' ') + "1" + std::string(8, ' ') +
                                   "EUR\r\n04PI" + std::string(216, ' ') +
                                   "T    000000000100002\r\n";

std::string Message(const std::string& amount, const std::string& name = "HANSA")
{
    return "{1:F01BANKFRPPAXXX0000000000}{4:\r\n:20:A\r\n:30:261125\r\n:21:1\r\n:32B:" + amount +
           "\r\n:59:/1\r\n" + name + "\r\n:71A:SHA\r\n-}";
}

std::string DebitsStating(const std::string& number)
{
    return "<Document><CstmrDrctDbtInitn><GrpHdr><NbOfTxs>" + number + "</NbOfTxs><CtrlSum>" +
           number + "</CtrlSum></GrpHdr><PmtInf><DrctDbtTxInf><InstdAmt Ccy='EUR'>" + number +
           "</InstdAmt></DrctDbtTxInf></PmtInf></CstmrDrctDbtInitn></Document>";
}

// What an order counts as when its amount cannot be read. It makes a total that is told as well,
// with number 13.
const std::string kLargest = "999999999999999999.00";

const DamagedCase kDamagedCases[] = {
    {"TransfersCutBeforeTheTotal",
     Work::Cfonb160,
     kTransfer.substr(0, 320),
     {"1/20", "2/7"},
     {"100.00"},
     "no total record"},
    {"TransfersCutWithinAnAmount",
     Work::Cfonb160,
     kTransfer.substr(0, kTransferAmount + 14),
     {"1/20", "2/11", "2/7", "2/13"},
     {kLargest},
     "is no number"},
    {"TransfersCutBeforeAnAmount",
     Work::Cfonb160,
     kTransfer.substr(0, kTransferAmount),
     {"1/20", "2/11", "2/7", "2/13"},
     {kLargest},
     "is no number"},
    {"NulBytesInATransferAmount",
     Work::Cfonb160,
     kTransfer.substr(0, kTransferAmount) + std::string(16, '\0') +
         kTransfer.substr(kTransferAmount + 16),
     {"1/20", "2/11", "3/5", "3/13"},
     {kLargest},
     "is no number"},
    {"InternationalTransfersCutBeforeTheTotal",
     Work::Cfonb320,
     kInternational,
     {"2/7"},
     {"100.00"},
     "no total record"},
    {"InternationalTransfersCutWithinAnAmount",
     Work::Cfonb320,
     UpTo(kInternational, "00002\r"),
     {"2/11", "2/7", "2/13"},
     {kLargest},
     "is no number"},
    {"BlanksBehindAnInternationalAmount",
     Work::Cfonb320,
     UpTo(kInternational, "00002\r") + "    2\r\n",
     {"2/11", "2/7", "2/13"},
     {kLargest},
     "is no number"},
    {"NulByteInAnInternationalAmount",
     Work::Cfonb320,
     WithNulAt(kInternational, "100002\r"),
     {"2/11", "2/7", "2/13"},
     {kLargest},
     "is no number"},
    {"MessageCutBeforeItsEnd",
     Work::Mt101,
     UpTo(Message("EUR12,"), ":71A:"),
     {"7/40"},
     {"12.00"},
     "not closed"},
    {"MessageCutBeforeTheNextOne",
     Work::Mt101,
     UpTo(Message("EUR12,"), ":71A:") + Message("EUR1,"),
     {"8/40"},
     {"12.00", "1.00"},
     "not closed"},
    {"MessageCutWithinAnAmount",
     Work::Mt101,
     UpTo(Message("EUR12345,"), "345,"),
     {"5/40"},
     {"12.00"},
     "it may be cut"},
    {"MessageAmountOf400Digits",
     Work::Mt101,
     Message("EUR" + std::string(400, '9')),
     {"4/13", "2/13"},
     {kLargest},
     "too many digits"},
    {"NulByteInAMessageAmount",
     Work::Mt101,
     WithNulAt(Message("EUR1234,"), "234,"),
     {"4/11", "2/13"},
     {kLargest},
     "is no number"},
    {"NulByteInAMessageName", Work::Mt101, WithNulAt(Message("EUR1,"), "ANSA"), {}, {"1.00"}, ""},
    {"DebitsWithNumbersOf400Digits",
     Work::Pain008,
     DebitsStating(std::string(400, '1')),
     {"1/13", "1/13", "1/1", "1/2"},
     {kLargest},
     "too many digits"},
};

class DamagedFile : public testing::TestWithParam<DamagedCase>
{
};

} // namespace

TEST_P(DamagedFile, IsConvertedAndItsDamageIsTold)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.txt", GetParam().bytes);

    const auto failure = FailureOf(GetParam().work, order, order + ".veu");

    ASSERT_FALSE(failure.has_value()) << failure->Text();
    std::vector<std::string> amounts;
    for (const auto& row : engine_tests::ReadRows(order + ".veu.cp", 4))
    {
        amounts.push_back(row.at(4));
    }
    EXPECT_EQ(amounts, GetParam().amounts);
    std::vector<std::string> errors;
    std::string texts;
    for (const auto& row : engine_tests::ReadRows(order + ".veu.err", 1))
    {
        errors.push_back(row.at(0) + "/" + row.at(3));
        texts += row.at(4) + "\n";
    }
    EXPECT_EQ(errors, GetParam().errors) << texts;
    EXPECT_THAT(texts, HasSubstr(GetParam().says));
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedFile, testing::ValuesIn(kDamagedCases),
                         [](const auto& test) { return std::string(test.param.name); });
