// What is written piece by piece reads as what PrintJson would have printed whole.

#include "host/json_stream.h"
#include "host/output.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <string>

namespace host
{
namespace
{

std::string PrintedBy(const std::function<void()>& print)
{
    testing::internal::CaptureStdout();
    print();
    FlushOutput();
    return testing::internal::GetCapturedStdout();
}

std::string Written(const std::function<void(JsonStream&)>& write)
{
    return PrintedBy(
        [&write]
        {
            JsonStream json;
            write(json);
            json.Finish();
        });
}

TEST(JsonStream, LooksAsAWholeObjectDoes)
{
    const nlohmann::ordered_json whole = {
        {"text", "a \"quoted\" \\ é"},
        {"flag", true},
        {"nothing", nullptr},
        {"list", {{{"number", 12}}, {{"number", 13}}}},
        {"after", "x"},
    };

    const std::string written = Written(
        [](JsonStream& json)
        {
            json.Text("text", "a \"quoted\" \\ é");
            json.Flag("flag", true);
            json.Null("nothing");
            json.BeginArray("list");
            for (const char* const number : {"12", "13"})
            {
                json.BeginObject();
                json.Number("number", number);
                json.End();
            }
            json.End();
            json.Text("after", "x");
        });

    EXPECT_EQ(written, PrintedBy([&whole] { PrintJson(whole); }));
}

TEST(JsonStream, EmptyListsAndObjectsStandInOneLine)
{
    EXPECT_EQ(Written(
                  [](JsonStream& json)
                  {
                      json.BeginArray("list");
                      json.End();
                      json.BeginObject("object");
                      json.End();
                  }),
              "{\n  \"list\": [],\n  \"object\": {}\n}\n");
}

TEST(JsonStream, NumbersKeepEveryDigit)
{
    EXPECT_EQ(Written([](JsonStream& json) { json.Number("n", "1000000000000000000.01"); }),
              "{\n  \"n\": 1000000000000000000.01\n}\n");
    EXPECT_EQ(Written([](JsonStream& json) { json.Number("n", "0.50"); }), "{\n  \"n\": 0.50\n}\n");
}

TEST(JsonStream, WhatIsNoNumberIsAText)
{
    for (const char* const text : {"", "007", "1,5", "-1", "x"})
    {
        EXPECT_EQ(Written([text](JsonStream& json) { json.Number("n", text); }),
                  std::string("{\n  \"n\": \"") + text + "\"\n}\n");
    }
}

TEST(JsonStream, MalformedBytesDoNotEndTheObject)
{
    EXPECT_EQ(Written([](JsonStream& json) { json.Text("t", "a\xFF"); }),
              "{\n  \"t\": \"a\xEF\xBF\xBD\"\n}\n");
}

} // namespace
} // namespace host
