#include "tests/testing/exposition_reader.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace testing_support
{

namespace
{

[[noreturn]] void Fail(const std::string& what)
{
    throw std::runtime_error(what);
}

void Require(bool holds, const std::string& what)
{
    if (!holds)
    {
        Fail(what);
    }
}

bool IsNameCharacter(char character, bool isFirst)
{
    const auto value = static_cast<unsigned char>(character);
    return character == '_' || std::isalpha(value) != 0 || (!isFirst && std::isdigit(value) != 0);
}

// Colons are for rules of a server, not for programs.
std::string TakeName(std::string_view& rest)
{
    std::size_t length = 0;
    while (length < rest.size() && IsNameCharacter(rest[length], length == 0))
    {
        ++length;
    }
    Require(length > 0, "a name is missing");
    std::string name(rest.substr(0, length));
    rest.remove_prefix(length);
    return name;
}

void Take(std::string_view& rest, char expected)
{
    Require(!rest.empty() && rest.front() == expected,
            std::string("'") + expected + "' is missing");
    rest.remove_prefix(1);
}

char Unescaped(char character)
{
    switch (character)
    {
    case '\\':
    case '"':
        return character;
    case 'n':
        return '\n';
    default:
        Fail("an escape that there is not");
    }
}

std::string TakeLabelValue(std::string_view& rest)
{
    std::string value;
    Take(rest, '"');
    while (!rest.empty() && rest.front() != '"')
    {
        char character = rest.front();
        rest.remove_prefix(1);
        if (character == '\\')
        {
            Require(!rest.empty(), "an escape without its character");
            character = Unescaped(rest.front());
            rest.remove_prefix(1);
        }
        value += character;
    }
    Take(rest, '"');
    return value;
}

MetricLabels TakeLabels(std::string_view& rest)
{
    MetricLabels labels;
    Take(rest, '{');
    while (true)
    {
        const std::string name = TakeName(rest);
        Take(rest, '=');
        Require(labels.emplace(name, TakeLabelValue(rest)).second, "label " + name + " twice");
        if (!rest.empty() && rest.front() == '}')
        {
            rest.remove_prefix(1);
            return labels;
        }
        Take(rest, ',');
    }
}

double NumberOf(std::string_view text)
{
    if (text == "+Inf")
    {
        return std::numeric_limits<double>::infinity();
    }
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    Require(result.ec == std::errc() && result.ptr == text.data() + text.size() &&
                std::isfinite(value),
            "no number: " + std::string(text));
    return value;
}

MetricSample SampleOf(std::string_view line)
{
    MetricSample sample;
    sample.name = TakeName(line);
    if (!line.empty() && line.front() == '{')
    {
        sample.labels = TakeLabels(line);
    }
    Take(line, ' ');
    sample.value = NumberOf(line);
    return sample;
}

bool BelongsTo(const MetricSample& sample, const MetricFamilyRead& family)
{
    if (family.type != "histogram")
    {
        return sample.name == family.name;
    }
    return sample.name == family.name + "_bucket" || sample.name == family.name + "_sum" ||
           sample.name == family.name + "_count";
}

/// One after the other, as they stand.
class FamilyReader
{
public:
    void Take(std::string_view line)
    {
        if (TakeStart(line, "# HELP "))
        {
            Require(!m_wantsType, "a help without its type");
            m_families.push_back({TakeName(line), "", {}});
            Require(line.size() > 1 && line.front() == ' ', "a help without words");
            Require(m_names.insert(m_families.back().name).second, "a family twice");
            m_wantsType = true;
            return;
        }
        if (TakeStart(line, "# TYPE "))
        {
            TakeType(line);
            return;
        }
        Require(!m_families.empty() && !m_wantsType, "a sample without its family");
        MetricSample sample = SampleOf(line);
        Require(BelongsTo(sample, m_families.back()), sample.name + " stands in another family");
        Require(m_samples.insert({sample.name, sample.labels}).second, "a sample twice");
        m_families.back().samples.push_back(std::move(sample));
    }

    std::vector<MetricFamilyRead> Families()
    {
        Require(!m_wantsType, "a help without its type");
        return std::move(m_families);
    }

private:
    static bool TakeStart(std::string_view& line, std::string_view start)
    {
        if (!line.starts_with(start))
        {
            return false;
        }
        line.remove_prefix(start.size());
        return true;
    }

    void TakeType(std::string_view line)
    {
        Require(m_wantsType && TakeName(line) == m_families.back().name, "a type without its help");
        const bool isKnown = line == " counter" || line == " gauge" || line == " histogram";
        Require(isKnown, "no type:" + std::string(line));
        m_families.back().type = line.substr(1);
        m_wantsType = false;
    }

    std::vector<MetricFamilyRead> m_families;
    std::set<std::string> m_names;
    std::set<std::pair<std::string, MetricLabels>> m_samples;
    bool m_wantsType = false;
};

void CheckCounter(const MetricFamilyRead& family)
{
    Require(family.name.ends_with("_total"), family.name + " is a counter and no _total");
    for (const MetricSample& each : family.samples)
    {
        Require(each.value >= 0.0 && each.value == std::floor(each.value),
                family.name + " counts no whole number");
    }
}

// All samples of one set of labels, `le` apart.
void CheckHistogram(const std::string& name, const std::vector<MetricSample>& samples)
{
    double bound = -1.0;
    double count = 0.0;
    std::map<std::string, double> ends;
    for (const MetricSample& each : samples)
    {
        if (each.name != name + "_bucket")
        {
            ends[each.name] = each.value;
            continue;
        }
        Require(each.labels.contains("le"), name + " has a bucket without bound");
        const double next = NumberOf(each.labels.at("le"));
        Require(next > bound, name + " has buckets whose bounds do not rise");
        Require(each.value >= count, name + " has buckets that are not cumulative");
        bound = next;
        count = each.value;
    }
    Require(std::isinf(bound), name + " has no last bucket");
    Require(ends.contains(name + "_sum") && ends.contains(name + "_count"),
            name + " lacks sum or count");
    Require(ends[name + "_count"] == count, name + " has a count that is not its last bucket");
    Require(ends[name + "_sum"] >= 0.0, name + " has a sum below 0");
}

void CheckHistograms(const MetricFamilyRead& family)
{
    std::map<MetricLabels, std::vector<MetricSample>> series;
    for (const MetricSample& each : family.samples)
    {
        MetricLabels labels = each.labels;
        labels.erase("le");
        series[labels].push_back(each);
    }
    Require(!series.empty(), family.name + " has no samples");
    for (const auto& [labels, samples] : series)
    {
        CheckHistogram(family.name, samples);
    }
}

bool Has(const MetricSample& sample, const std::string& name, const MetricLabels& labels)
{
    return sample.name == name &&
           std::all_of(labels.begin(), labels.end(),
                       [&sample](const auto& wanted)
                       {
                           const auto found = sample.labels.find(wanted.first);
                           return found != sample.labels.end() && found->second == wanted.second;
                       });
}

} // namespace

ExpositionReader::ExpositionReader(const std::string& text)
{
    Require(!text.empty() && text.back() == '\n', "the last line has no end");
    FamilyReader reader;
    std::istringstream lines(text);
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);)
    {
        ++number;
        try
        {
            reader.Take(line);
        }
        catch (const std::runtime_error& raised)
        {
            Fail("line " + std::to_string(number) + ": " + raised.what() + ": " + line);
        }
    }
    m_families = reader.Families();
    for (const MetricFamilyRead& family : m_families)
    {
        if (family.type == "counter")
        {
            CheckCounter(family);
        }
        if (family.type == "histogram")
        {
            CheckHistograms(family);
        }
    }
}

std::vector<std::string> ExpositionReader::FamilyNames() const
{
    std::vector<std::string> names;
    for (const MetricFamilyRead& family : m_families)
    {
        names.push_back(family.name);
    }
    return names;
}

double ExpositionReader::Sum(const std::string& name, const MetricLabels& labels) const
{
    double sum = 0.0;
    for (const MetricFamilyRead& family : m_families)
    {
        for (const MetricSample& each : family.samples)
        {
            sum += Has(each, name, labels) ? each.value : 0.0;
        }
    }
    return sum;
}

std::size_t ExpositionReader::Count(const std::string& name, const MetricLabels& labels) const
{
    std::size_t count = 0;
    for (const MetricFamilyRead& family : m_families)
    {
        for (const MetricSample& each : family.samples)
        {
            count += Has(each, name, labels) ? 1 : 0;
        }
    }
    return count;
}

} // namespace testing_support
