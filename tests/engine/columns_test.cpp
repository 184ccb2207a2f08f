#include "engine/cfonb_date.h"
#include "engine/convert.h"
#include "tests/engine/corpus_table.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

// Which text of an order file stands in which column. Rows are shown with their fields joined by
// '|'; "{25116}" is that date, whose year depends on today's.

using testing_support::TemporaryFolder;

namespace
{

using Rows = std::vector<std::string>;

constexpr std::size_t kFourLines = 4;
constexpr std::size_t kOneLine = 1;

std::string WithDate(std::string row)
{
    const std::string mark = "{25116}";
    for (std::size_t at = row.find(mark); at != std::string::npos; at = row.find(mark))
    {
        row.replace(at, mark.size(), engine::DateOfOneDigitYear("25116"));
    }
    return row;
}

Rows WithDates(const Rows& rows)
{
    Rows dated;
    for (const std::string& row : rows)
    {
        dated.push_back(WithDate(row));
    }
    return dated;
}

// The rows of a work file of a corpus file.
class WorkFilesOf
{
public:
    explicit WorkFilesOf(const std::string& file) : m_order(m_folder.Path(file))
    {
        const auto* const found =
            std::find_if(std::begin(kCorpus), std::end(kCorpus),
                         [&](const CorpusCase& corpusCase) { return corpusCase.file == file; });
        EXPECT_NE(found, std::end(kCorpus)) << file;
        std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / file, m_order);
        engine::Work work{};
        EXPECT_TRUE(engine::FindWork(found->format1, found->format2, work));
        engine::Convert(work, m_order, m_order + ".veu");
    }

    std::string Path(const char* extension) const { return m_order + ".veu" + extension; }

    Rows Read(const char* extension, std::size_t headerLines = kFourLines) const
    {
        Rows rows;
        for (const engine_tests::Fields& fields :
             engine_tests::ReadRows(Path(extension), headerLines))
        {
            std::string row;
            for (const std::string& field : fields)
            {
                row += (&field == &fields.front() ? "" : "|") + field;
            }
            rows.push_back(row);
        }
        return rows;
    }

private:
    TemporaryFolder m_folder;
    std::string m_order;
};

struct ColumnsCase
{
    const char* file;
    Rows orders;
    Rows remittances;
    Rows details;
};

void PrintTo(const ColumnsCase& columnsCase, std::ostream* stream)
{
    *stream << columnsCase.file;
}

const ColumnsCase kColumnsCases[] = {
    {"pain001_all_columns.xml",
     {"1.1|1|00112233|FR7630006000011234567890189|10.00|GBP|E2E-1|1|20261125|AGRIFRPP||"
      "FR7630006000011234567890189|RF18539007547034|Maison Lef\xE8vre|Cr\xE9"
      "dit du Lac|E2E-1|10.00|GBP",
      "2.1|1|FR1420041010050500013M02606|4711|20.00|EUR|I2|1|20261201|021000021||4711|one two|"
      "Acme||E2E-2|20.00|EUR",
      "2.2|1|FR1420041010050500013M02606|DE89370400440532013000|30.00|EUR|I3|0|20261201|||"
      "DE89370400440532013000||Acme|Bank of Nowhere|E2E-3|30.00|EUR"},
     {"1|1|10.00|GBP", "2|1|50.00|EUR"},
     {"1|1|MSG-09|20261125|123456||00112233||GBP|Ateliers & Cie|Sender|G1",
      "2|1|MSG-09|20261201|||FR1420041010050500013M02606||EUR|Ateliers Durand|Sender|G2"}},
    {"pain001_old_columns.xml",
     {"1.1|1|20041010050500013M02606|P-1|1.00|EUR|E2E-1|1|20261125|||P-1|CR-1|Lefevre|"
      "Credit du Lac|E2E-1|1.00|EUR"},
     {"1|1|1.00|EUR"},
     {"1|1|MSG-02|20261125|BNPAFRPP||20041010050500013M02606||EUR|Ateliers Durand|Sender|"}},
    {"pain008_v11_groups.xml",
     {"1.1|1|FR7612345987650123456789014|FR7630001007941234567890185|11.10|EUR|D1|0|20261201|"
      "CEPAFRPP||FR7612345987650123456789014||Abonn\xE9 1||D1|11.10|EUR",
      "1.2|1|FR7612345987650123456789014|FR7630001007941234567890185|22.20|EUR|D2|0|20261201|"
      "CEPAFRPP||FR7612345987650123456789014||Abonn\xE9 2||D2|22.20|EUR",
      "2.1|1|FR7612345987650123456789014|FR7630001007941234567890185|33.30|EUR|D3|0|20261201|"
      "CEPAFRPP||FR7612345987650123456789014||Abonn\xE9 3||D3|33.30|EUR"},
     {"1|1|33.30|EUR", "2|1|33.30|EUR"},
     {"1|1|DD-11|20261201|BDFEFRPP||FR7630001007941234567890185||EUR|Gaz du Sud|FR00ZZZ123456|"
      "DD1",
      "2|1|DD-11|20261201|BDFEFRPP||FR7630001007941234567890185||EUR|Gaz du Sud|FR00ZZZ123456|"
      "DD2"}},
    {"cfonb160_transfers.txt",
     {"2|1|12345678901|00112345678|100.00|EUR|REF000000001|0|{25116}|30006|00600|00112345678|"
      "FACTURE 1|MAISON LEFEVRE|BANQUE DU SUD|REF000000001|100.00|EUR",
      "3|1|12345678901|00112345678|250.50|EUR|REF000000002|0|{25116}|30006|00600|00112345678|"
      "FACTURE 2|MAISON LEFEVRE|BANQUE DU SUD|REF000000002|250.50|EUR"},
     {"1|1|350.50|EUR"},
     {"1|1|REM0001|{25116}|30001|00794|12345678901||EUR|ATELIERS DURAND|123456|REM0001"}},
    {"cfonb160_debits.txt",
     {"2|1|00112345678|12345678901|123.45|EUR|REF000000001|0|{25116}|30006|00600|00112345678|"
      "FACTURE 1|MAISON LEFEVRE|BANQUE DU SUD|REF000000001|123.45|EUR",
      "5|1|00112345678|12345678901|0.01|EUR|REF000000002|0|{25116}|30006|00600|00112345678|"
      "FACTURE 2|MAISON LEFEVRE|BANQUE DU SUD|REF000000002|0.01|EUR"},
     {"1|1|123.45|EUR", "4|1|0.01|EUR"},
     {"1|1|REM0001|{25116}|30001|00794|12345678901||EUR|ATELIERS DURAND|123456|REM0001",
      "4|1|REM0001|{25116}|30001|00794|12345678901||EUR|ATELIERS DURAND|123456|REM0001"}},
    {"cfonb160_bills_and_transfers.txt",
     {"2|1|00112345678|12345678901|5.00|EUR|TIRE000002|0|20261231|30006|00600|00112345678||"
      "GARAGE MARTIN|CREDIT DU LAC|TIREUR0002|5.00|EUR",
      "4|1|00112345678|12345678901|7.00|EUR|TIRE000004|0||30006|00600|00112345678||GARAGE MARTIN|"
      "CREDIT DU LAC|TIREUR0004|7.00|EUR",
      "7|1|12345678901|00112345678|0.99|EUR|REF000000001|1|{25116}|30006|00600|00112345678|"
      "FACTURE 1|MAISON LEFEVRE|BANQUE DU SUD|REF000000001|0.99|EUR"},
     {"1|1|12.00|EUR", "6|1|0.99|EUR"},
     {"1|1|REM00000001|20261125|30001|00794|12345678901|BANQUE DU NORD|EUR|ATELIERS DURAND|AGR001|"
      "REM00000001",
      "6|1|REM0001|{25116}|30001|00794|12345678901||EUR|ATELIERS DURAND|123456|REM0001"}},
    {"cfonb320_complements.txt",
     {"3|1|FR1420041010050500013M02606|DE89370400440532013000|77.00|USD|ORD2|0|20261125|HANSDEFF||"
      "DE89370400440532013000|INVOICE 1|HANSA GMBH|HANSABANK|ORD2|77.00|USD"},
     {"1|1|77.00|USD"},
     {"1|1|REM320-1|20261125|BNPAFRPPXXX||FR1420041010050500013M02606||USD|ATELIERS DURAND|"
      "12345678900011|REM320-1"}},
    {"cfonb320_kinds_3_4.txt",
     {"2|1|FR1420041010050500013M02606|DE89370400440532013000|10.00|USD|ORD1|0|20261201|||"
      "DE89370400440532013000||HANSA GMBH||ORD1|10.00|USD",
      "3|1|FR1420041010050500013M02606|DE89370400440532013000|20.00|USD|ORD2|0|20261202|||"
      "DE89370400440532013000||HANSA GMBH||ORD2|20.00|USD",
      "6|1|20041010050500013M02606|DE89370400440532013000|500|JPY|ORD1|0|20261203|||"
      "DE89370400440532013000||HANSA GMBH||ORD1|500|JPY",
      "7|1|20041010050500013M02606|DE89370400440532013000|12.345|TND|ORD2|0|20261204|||"
      "DE89370400440532013000||HANSA GMBH||ORD2|12.345|TND"},
     {"1|1|30.00|USD", "5|1|500|JPY", "5|1|12.345|TND"},
     {"1|1|REM320-1||BNPAFRPPXXX||FR1420041010050500013M02606||USD|ATELIERS DURAND|12345678900011|"
      "REM320-1",
      "5|1|REM320-1||BNPAFRPPXXX||20041010050500013M02606||JPY|ATELIERS DURAND|12345678900011|"
      "REM320-1",
      "5|1|REM320-1||BNPAFRPPXXX||20041010050500013M02606||TND|ATELIERS DURAND|12345678900011|"
      "REM320-1"}},
    {"cfonb320_equivalent.txt",
     {"2|1|FR1420041010050500013M02606|DE89370400440532013000|77.00|EUR|ORD1|0|20261125|||"
      "DE89370400440532013000||HANSA GMBH||ORD1|77.00|EUR"},
     {"1|1|77.00|EUR"},
     {"1|1|REM320-1|20261125|BNPAFRPPXXX||FR1420041010050500013M02606||EUR|ATELIERS DURAND|"
      "12345678900011|REM320-1"}},
    {"mt101_all_columns.txt",
     {"1.1|1|FR7600001|GB11AAAA|10.00|USD|ORD1|1|20261125|SC123456||GB11AAAA|"
      "INVOICE 1 /SECOND LINE|JOHN SMITH|FIRST BANK MAIN STREET|ORD1|10.00|USD",
      "1.2|1|FR7600002|GB22BBBB|20.50|USD|ORD2|0|20261125|FW021000021||GB22BBBB||ACMEGB2L||ORD2|"
      "20.50|USD",
      "1.3|1|CUST/FR/BNP/4711||30.00|USD|ORD3|0|20261125|DEUTDEFF||||NO ACCOUNT LTD||ORD3|30.00|"
      "USD"},
     {"1|1|60.50|USD"},
     {"1|1|REF0009|20261125|BNPAFRPPXXX||||USD||SENDER|WHOLE"}},
    {"mt101_ordered_amount.txt",
     {"1.1|1|FR1420041010050500013M02606|DE89370400440532013000|250.00|USD|ORD1|0|20261125|"
      "DEUTDEFF||DE89370400440532013000|INVOICE 1|HANSA GMBH||ORD1|250.00|USD",
      "1.2|1|FR1420041010050500013M02606|DE89370400440532013000|100.00|EUR|ORD2|0|20261125|"
      "DEUTDEFF||DE89370400440532013000|INVOICE 2|HANSA GMBH||ORD2|100.00|EUR"},
     {"1|1|100.00|EUR", "1|1|250.00|USD"},
     {"1|1|REF0001|20261125|||FR1420041010050500013M02606||EUR|ATELIERS DURAND||ALL",
      "1|1|REF0001|20261125|||FR1420041010050500013M02606||USD|ATELIERS DURAND||ALL"}},
};

class Columns : public testing::TestWithParam<ColumnsCase>
{
};

struct ErrorsCase
{
    const char* file;
    Rows rows;
};

void PrintTo(const ErrorsCase& errorsCase, std::ostream* stream)
{
    *stream << errorsCase.file;
}

// Position (line or record), marker, record, number, text.
const ErrorsCase kErrorsCases[] = {
    {"pain001_bad_amounts.xml",
     {"5|1|1.1|11|Amount 12,50 is no number with '.'; the order counts as 999999999999999999",
      "6|1|1.2|11|Amount abc is no number with '.'; the order counts as 999999999999999999",
      "7|1|1.3|11|Amount -5.00 is negative; the order counts as 999999999999999999",
      "8|1|1.4|10|Order without an amount; the order counts as 999999999999999999",
      "10|1|1|13|The total of 3999999999999999999.00 EUR is weighed as 922337203685.477580"}},
    {"pain001_wrong_group.xml",
     {"7|1|1|3|The payment group states 3 orders, 2 were read",
      "7|1|1|4|The payment group states a sum of 2.99, the orders read sum to 3.00"}},
    {"pain001_wrong_sum.xml",
     {"8|1|MSG-03|2|The file states a sum of 4.00, the orders read sum to 3.00"}},
    {"pain001_no_group.xml", {"4|1||43|The file holds no order"}},
    {"pain001_with_debits.xml", {"7|1||31|A pain.008 message in the file is passed over"}},
    {"pain001_bad_date.xml", {"4|1|1|41|The execution date 2026-13-25 is none"}},
    {"cfonb160_wrong_total.txt",
     {"3|1|3|5|The total record states '0000000000009999', the amount zones read sum to 10000"}},
    {"cfonb160_cut_amount.txt",
     {"3|1|3|11|Amount zone '0000000000      ' is no number; the order counts as "
      "999999999999999999",
      "4|1|4|5|The total record states '0000000000035050', the amount zones read sum to 10000",
      "4|1|1|13|The total of 1000000000000000099.00 EUR is weighed as 922337203685.477580"}},
    {"cfonb320_odd_orders.txt",
     {"1|1|1|41|Remittance kind '9' is none of 1 to 4",
      "2|1|2|11|Order whose number of decimals is missing; the order counts as "
      "999999999999999999",
      "3|1|3|11|Amount zone '  10000       ' is no number; the order counts as "
      "999999999999999999",
      "4|1|4|41|Amount qualifier 'Q' is neither T nor D",
      "5|1|5|31|Operation code XX in a remittance of PI",
      "5|1|5|41|Date zone '2026    ' holds no date",
      "6|1|6|5|The total record states '000000000000000800', the amount zones read sum to 700",
      "6|1|1|13|The total of 2000000000000000005.00 USD is weighed as 922337203685.477580"}},
    {"mt101_bad_amounts.txt",
     {"8|1|1.1|11|Amount 1.000,50 is no number with ','; the order counts as 999999999999999999",
      "15|1|1.2|10|Order without an amount; the order counts as 999999999999999999",
      "22|1|1.3|11|Amount -5, is negative; the order counts as 999999999999999999",
      "2|1|1|13|The total of 2999999999999999997.00 EUR is weighed as 922337203685.477580"}},
    {"mt101_two_amounts.txt", {"10|1|1.1|30|Second field 32B in one order; the larger one counts"}},
    {"mt101_broken_chain.txt",
     {"3|1|1.0|6|Message 2/3 does not continue those before it",
      "18|1|2.0|41|Field 28D holds no index of a chain: x",
      "17|1|2.1|6|The last message is 2/3 of its chain: others are missing"}},
    {"mt101_no_21.txt", {"8|1|1.1|40|Order without a field 21"}},
    {"mt101_before_20.txt", {"1|1|1.0|40|Order without a field 20 before it"}},
};

class Errors : public testing::TestWithParam<ErrorsCase>
{
};

const auto kFileName = [](const auto& test)
{
    std::string name = test.param.file;
    name.erase(name.rfind('.'));
    return name;
};

} // namespace

TEST_P(Columns, HoldTheTextsOfTheOrderFile)
{
    const WorkFilesOf files(GetParam().file);
    EXPECT_EQ(files.Read(".cp"), WithDates(GetParam().orders));
    EXPECT_EQ(files.Read(".bp"), WithDates(GetParam().remittances));
    EXPECT_EQ(files.Read(".cp2"), WithDates(GetParam().details));
}

INSTANTIATE_TEST_SUITE_P(Files, Columns, testing::ValuesIn(kColumnsCases), kFileName);

TEST_P(Errors, NameLineRecordAndNumber)
{
    EXPECT_EQ(WorkFilesOf(GetParam().file).Read(".err", kOneLine), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(Files, Errors, testing::ValuesIn(kErrorsCases), kFileName);

TEST(WorkFiles, HaveTheirHeaderNames)
{
    const WorkFilesOf files("cfonb160_transfers.txt");
    const auto names = [&](const char* extension)
    {
        const std::string bytes = testing_support::ReadWholeFile(files.Path(extension));
        return bytes.substr(0, bytes.find("\r\n"));
    };
    EXPECT_EQ(names(".bp"), "RECORD;CORPS;TOTAL;DEVISE");
    EXPECT_EQ(names(".cp"), "RECORD;CORPS;CTL_CPTDEBIT;CTL_CPTCREDIT;CTL_MONTANT;CTL_DEVISE;"
                            "CTL_REF_TRANS;CTL_URGENT;CTL_EXEC_DATE;BANQUE;GUICHET;COMPTE;LIBELLE;"
                            "RAISONSOC;DOMICILIATION;REFERENCE;MONTANT;DEVISE");
    EXPECT_EQ(names(".cp2"), "RECORD;CORPS;CTL_REF_REMISE;DATE_EXEC;BANQUE;GUICHET;COMPTE;LIBELLE;"
                             "DEVISE_TRANS;RAISONSOC;EMETTEUR;REF_REMISE");
    EXPECT_EQ(names(".err"), "POS;CORPS;RECORD;NO_ERR;MESS");
}
