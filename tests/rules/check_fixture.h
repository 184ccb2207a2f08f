#pragma once

#include "containers/shared_ref_impl.h"
#include "database/cdatabase.h"
#include "rules/check_signatures.h"
#include "tests/rules/message_text.h"
#include "tests/signers/failing_rows.h"
#include "tests/signers/trace_file.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace testing_support
{

/// Keeps the events it is given.
class JournalOfATest : public rules::AuditJournal
{
public:
    struct Event
    {
        unsigned short level;
        std::wstring text;
    };

    void LogEvent(unsigned short level, const wchar_t* message) override
    {
        events.push_back({level, message});
    }

    std::vector<Event> events;
};

/// A session without its object: the tables, the connection, the signers and the journal.
class CheckTest : public testing::Test
{
protected:
    CheckTest()
    {
        bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
            .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Bo Dahl"));
        connexionString = tables.ConnexionString();
    }

    std::uint32_t Check(const wchar_t* list)
    {
        const rules::CheckInput input = {
            contract,       {file.c_str(), orderId.c_str(), 42, total, largest},
            list,           withoutConnexionString ? nullptr : connexionString.c_str(),
            trace.Handle(), signers,
            session,        journal,
        };
        return rules::CheckSignatures(input, reasonCode, reasonText, trail);
    }

    /// One event of this level, headed so, with these lines.
    void ExpectEvent(unsigned short level, const std::wstring& text)
    {
        ASSERT_EQ(journal.events.size(), 1U);
        EXPECT_EQ(journal.events[0].level, level);
        EXPECT_EQ(journal.events[0].text, text);
    }

    /// The check did not come to a judgement: no outputs, no row, no event.
    void ExpectNotRun(const char* problem)
    {
        EXPECT_STREQ(reasonCode.SafeGetString(), "before");
        EXPECT_STREQ(reasonText.SafeGetString(), L"before");
        EXPECT_TRUE(journal.events.empty());
        EXPECT_FALSE(trail.ran);
        EXPECT_FALSE(trail.rulesComplete);
        EXPECT_FALSE(trail.lookupsComplete);
        EXPECT_EQ(trail.rowsDue, 0U);
        EXPECT_EQ(trail.rowsWritten, 0U);
        if (problem != nullptr)
        {
            EXPECT_STREQ(trail.problem.SafeGetString(), problem);
        }
        EXPECT_FALSE(trail.problem.IsEmpty());
        EXPECT_EQ(RowCount(), 0U);
    }

    std::size_t RowCount() { return Column(L"STATUT").size(); }

    /// What is read back of a text: products other than SQLite may drop its trailing blanks.
    static std::wstring Stored(std::wstring text)
    {
        if (!RunsOnSqlite())
        {
            text.erase(text.find_last_not_of(L' ') + 1U);
        }
        return text;
    }

    /// One column of the history, in the order of writing; NULL is "NULL".
    std::vector<std::wstring> Column(const std::wstring& name)
    {
        std::vector<std::wstring> values;
        for (const Row& row :
             tables.Query(L"SELECT " + name + L" FROM HST_SIGNRULES ORDER BY ROWNO"))
        {
            values.push_back(Stored(row[0].value_or(L"NULL")));
        }
        return values;
    }

    TestDatabase tables;
    Bank bank{tables};
    TraceFile trace;
    SharedRef<CDatabase> session;
    TArray<signerInfo> signers{128};
    JournalOfATest journal;
    rules::ContractKey contract = {1, 9, "EBICS", "PARTNER1", "SERVICE1", "CLIENT1", true, false};
    std::string connexionString;
    bool withoutConnexionString = false;
    std::string file = "order.xml";
    std::string orderId = "ORDER1";
    double total = 100.0;
    double largest = 60.0;
    TSimpleString reasonCode = "before";
    TSimpleStringW reasonText = L"before";
    rules::CheckTrail trail;
};

} // namespace testing_support
