#include "tests/model/real_bank.h"

#include "tests/model/plain_texts.h"

#include <ctime>
#include <cwchar>

namespace model
{

namespace
{

std::wstring Sql(const Text& text)
{
    return L"'" + Doubled(text) + L"'";
}

std::wstring Sql(const NullableText& text)
{
    return text ? Sql(*text) : L"NULL";
}

std::wstring Sql(std::int64_t number)
{
    return std::to_wstring(number);
}

std::wstring Sql(const NullableNumber& number)
{
    return number ? Sql(*number) : L"NULL";
}

std::wstring Sql(const ContractKey& key)
{
    return Sql(key.partner) + L", " + Sql(key.service) + L", " + Sql(key.client) + L", " +
           Sql(key.protocol) + L", " + Sql(key.server);
}

std::wstring Values(const HolderRow& row)
{
    return Sql(row.huid) + L", 'BANK', " + Sql(row.firstName) + L", " + Sql(row.lastName) + L", " +
           Sql(row.opposition);
}

std::wstring Values(const CertificateRow& row)
{
    return Sql(row.huid) + L", " + Sql(row.commonName) + L", '01', '2099-12-31'";
}

std::wstring Values(const ContractRow& row)
{
    return Sql(row.cuid) + L", " + Sql(row.key) + L", " + Sql(row.allHolders) + L", " +
           Sql(row.opposition);
}

std::wstring Values(const CurrentRow& row)
{
    return Sql(row.cuid) + L", " + Sql(row.key) + L", " + Sql(row.type) + L", " + Sql(row.profile) +
           L", " + Sql(row.allHolders) + L", " + Sql(row.opposition);
}

std::wstring Values(const RuleRow& row)
{
    return Sql(row.cuid) + L", " + Sql(row.huid1) + L", " + Sql(row.huid2) + L", " +
           Sql(row.alone) + L", " + Sql(row.amount) + L", " + Sql(row.tlevel);
}

template <typename Row>
void AddInsert(std::vector<std::wstring>& statements, const std::wstring& into,
               const std::vector<Row>& rows)
{
    std::wstring statement;
    for (const Row& row : rows)
    {
        statement += (statement.empty() ? L"INSERT INTO " + into + L" VALUES (" : L", (") +
                     Values(row) + L")";
    }
    if (!statement.empty())
    {
        statements.push_back(statement);
    }
}

Text TextOf(const std::optional<std::wstring>& value)
{
    return value.value_or(L"(NULL)");
}

std::int64_t NumberOf(const std::optional<std::wstring>& value)
{
    return value ? std::wcstoll(value->c_str(), nullptr, 10) : -999999;
}

double AmountOf(const std::optional<std::wstring>& value)
{
    return value ? std::wcstod(value->c_str(), nullptr) : -999999.0;
}

/// Rows carry local time; a run of one world takes well under these seconds. The clock of whole
/// seconds may lag a little behind the one that the database reads.
void CheckTime(const std::optional<std::wstring>& value, Results& results)
{
    constexpr int patience = 600;
    const auto local = [](std::time_t moment)
    {
        std::tm parts{};
        localtime_r(&moment, &parts);
        wchar_t text[32];
        std::wcsftime(text, 32, L"%Y-%m-%d %H:%M:%S", &parts);
        return std::wstring(text);
    };
    const std::time_t now = std::time(nullptr);
    const std::wstring seen = TextOf(value).substr(0, 19);
    if (seen.size() != 19 || seen < local(now - patience) || seen > local(now + 1))
    {
        results.problems.push_back("a row carries the time " + Utf8Of(TextOf(value)));
    }
}

} // namespace

RealBank::RealBank()
    : m_memory("TMPDIR", testing_support::MemoryFolder()),
      m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()),
      m_handOff("SIGNUTILS_HANDOFF", m_folder.Path("handoff").c_str()),
      m_language("SIGNUTILS_LANG", "en")
{
    // Kept by the file: a write-ahead log spares each statement a journal file of its own.
    m_database.Query(L"PRAGMA journal_mode=WAL");
}

std::vector<std::wstring> RealBank::Statements(const Tables& tables)
{
    std::vector<std::wstring> statements;
    AddInsert(statements, L"SSR_HOLDER (HUID, VPNAME, FNAME, LNAME, OPPOSITION)", tables.holders);
    AddInsert(statements, L"SSR_HOLDERID (HUID, CN, SERIAL, EXPIRDATE)", tables.certificates);
    AddInsert(statements,
              L"SSR_CONTRACT (CUID, VPNAME, VFNAME, VCNAME, PTC, SERVER, ALLHOLDERS, OPPOSITION)",
              tables.contracts);
    AddInsert(statements,
              L"SSR_CONTRACTCUR (CUID, VPNAME, VFNAME, VCNAME, PROTOCOL, SERVER, TYPE, PROFILE, "
              L"ALLHOLDERS, OPPOSITION)",
              tables.current);
    AddInsert(statements, L"SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL)",
              tables.rules);
    return statements;
}

void RealBank::Load(const Tables& tables)
{
    m_database.Execute(L"BEGIN IMMEDIATE");
    for (const wchar_t* const table :
         {L"SSR_HOLDER", L"SSR_HOLDERID", L"SSR_CONTRACT", L"SSR_CONTRACTCUR", L"SSR_CONTRACTRULE",
          L"HST_SIGNRULES", L"EVT_JOURNAL"})
    {
        m_database.Execute(std::wstring(L"DELETE FROM ") + table);
    }
    for (const std::wstring& statement : Statements(tables))
    {
        m_database.Execute(statement);
    }
    m_database.Execute(L"COMMIT");
}

void RealBank::HideJournal()
{
    m_database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY");
}

void RealBank::ShowJournal()
{
    m_database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
}

void RealBank::ReadHistory(Results& results)
{
    const auto rows = m_database.Query(
        L"SELECT DATETIME, SERVER, STATUT, VPNAME, TYPE_PTC, VFNAME, VCNAME, IDFICVFS, ORDERID, "
        L"TYPE_CTRL, SIGNER1, SIGNER2, MOTIF, CNS, printf('%!.20e', TOTAL), "
        L"printf('%!.20e', MAXORDER), FILENAME FROM HST_SIGNRULES ORDER BY ROWNO");
    for (const testing_support::Row& row : rows)
    {
        CheckTime(row[0], results);
        results.history.push_back(
            {NumberOf(row[1]), TextOf(row[2]), TextOf(row[3]), NumberOf(row[4]), TextOf(row[5]),
             TextOf(row[6]), NumberOf(row[7]), TextOf(row[8]), NumberOf(row[9]), TextOf(row[10]),
             TextOf(row[11]), TextOf(row[12]), TextOf(row[13]), AmountOf(row[14]),
             AmountOf(row[15]), TextOf(row[16])});
    }
}

void RealBank::ReadJournal(Results& results)
{
    const auto rows = m_database.Query(
        L"SELECT DATETIME, SOURCE, LEVEL, REFERENCE, AUX1, AUX2, TEXT, ATTACHKIND, ATTACHPATH, "
        L"LENGTH(EVENTKEY) FROM EVT_JOURNAL ORDER BY EVENTID");
    for (const testing_support::Row& row : rows)
    {
        CheckTime(row[0], results);
        if (TextOf(row[1]) != L"RULSGN" || row[4] || row[5] || NumberOf(row[9]) != 36)
        {
            results.problems.push_back("an event is not of this library's form");
        }
        results.journal.push_back({static_cast<int>(NumberOf(row[2])), row[3], TextOf(row[6]),
                                   row[7].value_or(L""), row[8].value_or(L"")});
    }
}

} // namespace model
