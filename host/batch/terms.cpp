#include "host/batch/terms.h"

#include "host/batch/order_name.h"
#include "host/file_text.h"
#include "host/refusal.h"
#include "host/suggestion.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace batch
{

namespace
{

using host::OptionKind;
using host::OptionSpec;
using host::OptionValue;
using host::OptionValues;
using host::UsageRefusal;
using nlohmann::json;

constexpr std::int64_t kLargestTermsMiB = 1;

// What an order takes from the settings of all when it has none of its own.
const std::vector<std::string>& CommonNames()
{
    static const std::vector<std::string> names = []
    {
        std::vector<std::string> all = TermNames();
        all.insert(all.end(), {"db", "hand-off"});
        return all;
    }();
    return names;
}

const OptionSpec& SpecOf(const std::string& name, const std::string& place)
{
    if (!IsTerm(name))
    {
        throw UsageRefusal(
            place + ", field " + host::Printable(name) + ": unknown field." +
            host::DidYouMean(name, TermNames(), "") +
            " Fields are named like the options of signcheck check, without dashes.");
    }
    return *host::FindOption(*host::FindCommand("check"), name);
}

std::string FlagText(const std::string& text, const std::string& origin)
{
    if (text != host::kFlagOn && text != host::kFlagOff)
    {
        throw UsageRefusal(origin + ": " + host::Quoted(text) +
                           " is neither true nor false. Write one of them.");
    }
    return text;
}

// A JSON number is binary: 0.10 would not stay 0.10.
std::string JsonText(const json& value, const OptionSpec& spec, const std::string& origin)
{
    if (spec.kind == OptionKind::Flag && value.is_boolean())
    {
        return value.get<bool>() ? host::kFlagOn : host::kFlagOff;
    }
    if (spec.kind != OptionKind::Flag && value.is_string())
    {
        return value.get<std::string>();
    }
    const bool isNumber = spec.kind == OptionKind::Number || spec.kind == OptionKind::Amount;
    if (isNumber && value.is_number_integer())
    {
        return value.dump();
    }
    throw UsageRefusal(origin + ": " +
                       host::Quoted(value.dump(-1, ' ', false, json::error_handler_t::replace)) +
                       " cannot be taken. Write " +
                       (spec.kind == OptionKind::Flag     ? "true or false"
                        : spec.kind == OptionKind::Number ? "a whole number"
                        : spec.kind == OptionKind::Amount ? "an amount in quotes"
                                                          : "a text in quotes") +
                       ".");
}

std::size_t LineOf(const std::string& text, std::size_t byte)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

// A key that stands twice would be taken once, and nobody could tell which was meant.
class KeysOnce
{
public:
    bool operator()(int depth, json::parse_event_t event, json& parsed)
    {
        if (event == json::parse_event_t::key && depth == 1 &&
            !m_seen.insert(parsed.get<std::string>()).second)
        {
            *m_twice = parsed.get<std::string>();
        }
        return true;
    }

    explicit KeysOnce(std::string& twice) : m_twice(&twice) {}

private:
    std::set<std::string> m_seen;
    std::string* m_twice;
};

} // namespace

const std::vector<std::string>& TermNames()
{
    static const std::vector<std::string> names = {
        "partner",  "service",      "client",     "protocol", "type",     "requester",   "veu",
        "signers",  "format",       "total",      "largest",  "currency", "psr-service", "party",
        "order-id", "message-name", "message-id", "file-id",  "request"};
    return names;
}

bool IsTerm(const std::string& option)
{
    return std::find(TermNames().begin(), TermNames().end(), option) != TermNames().end();
}

void AddTerm(const std::string& name, const std::string& text, const std::string& place,
             OptionValues& values)
{
    const std::string origin = place + ", field " + name;
    const bool isFlag = SpecOf(name, place).kind == OptionKind::Flag;
    values.AddUnlessThere(name, {isFlag ? FlagText(text, origin) : text, origin});
}

void AddJsonTerms(const json& object, const std::string& place, const std::string& leftOut,
                  OptionValues& values)
{
    for (const auto& [name, value] : object.items())
    {
        if (name != leftOut)
        {
            const OptionSpec& spec = SpecOf(name, place);
            const std::string origin = place + ", field " + name;
            values.AddUnlessThere(name, {JsonText(value, spec, origin), origin});
        }
    }
}

json JsonObject(const std::string& text, const std::string& name, std::size_t firstLine)
{
    constexpr const char* kExample = "{\"signers\": \"Ana Ruiz;Paul Durand\", \"order-id\": "
                                     "\"A001\"}.";
    const auto place = [&](std::size_t byte)
    { return name + ", line " + std::to_string(firstLine - 1 + LineOf(text, byte)); };
    json object;
    std::string twice;
    try
    {
        object = json::parse(text, KeysOnce(twice));
    }
    catch (const json::parse_error& error)
    {
        throw UsageRefusal(place(error.byte) + ": this is no JSON. Write one object, as in " +
                           kExample);
    }
    if (!object.is_object())
    {
        throw UsageRefusal(place(0) +
                           ": expected one JSON object. Write the terms in braces, as "
                           "in " +
                           kExample);
    }
    if (!twice.empty())
    {
        throw UsageRefusal(place(0) + ", field " + host::Printable(twice) +
                           ": it stands there twice. Leave one of them out.");
    }
    return object;
}

OptionValues TermsBeside(const std::string& order)
{
    const std::string name = order + kTermsEnding;
    const std::string text = host::ReadTextFile({name, "the terms of " + host::Quoted(order)},
                                                "the terms", kLargestTermsMiB);
    OptionValues values;
    AddJsonTerms(JsonObject(text, host::Printable(name), 1), host::Printable(name), "", values);
    return values;
}

void RequireOwnReport(const OptionValues& own, const OptionValues& common)
{
    const OptionValues all = WithCommon(own, common);
    const OptionValue* const service = all.Find("psr-service");
    if (service == nullptr || service->text.empty())
    {
        return;
    }
    for (const char* const name : {"message-id", "order-id"})
    {
        if (own.Find(name) == nullptr)
        {
            throw UsageRefusal(service->origin + " asks for a status report: the term " + name +
                               " must be the order's own. Give it in the terms of each order.");
        }
    }
}

OptionValues WithCommon(OptionValues own, const OptionValues& common)
{
    for (const std::string& name : CommonNames())
    {
        if (const OptionValue* const value = common.Find(name); value != nullptr)
        {
            own.AddUnlessThere(name, *value);
        }
    }
    return own;
}

} // namespace batch
