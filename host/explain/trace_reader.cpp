#include "host/explain/trace_reader.h"

#include <algorithm>
#include <iterator>

namespace explain
{

namespace
{

/// A line of a trace: title and moment of a section, or label and value.
struct Line
{
    bool isTitle = false;
    std::string_view label;
    std::string_view value;
};

std::string_view TrimmedRight(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(" \r") + 1);
}

Line Read(std::string_view text)
{
    Line line;
    const std::size_t stamp = text.find(" ms] ");
    if (!text.empty() && text.front() == '[' && stamp != std::string_view::npos)
    {
        line.isTitle = true;
        line.label = TrimmedRight(text.substr(stamp + 5));
        line.value = text.substr(1, std::min(text.rfind(" +", stamp), stamp) - 1);
        return line;
    }
    const std::size_t colon = text.find(": ");
    if (colon != std::string_view::npos)
    {
        line.label = TrimmedRight(text.substr(0, colon));
        line.value = text.substr(colon + 2);
    }
    return line;
}

struct RuleField
{
    const char* label;
    std::string TracedRule::*field;
};

constexpr RuleField kRuleFields[] = {
    {"CUID Rules", &TracedRule::cuid},      {"CUID ALLHOLDERS", &TracedRule::allHolders},
    {"CUID PROFILE", &TracedRule::profile}, {"CUID ALONE", &TracedRule::alone},
    {"CUID AMOUNT", &TracedRule::amount},   {"CUID TLEVEL", &TracedRule::level},
    {"HUID Signer 1", &TracedRule::huid1},  {"HUID Signer 2", &TracedRule::huid2},
};

struct EndingLine
{
    const char* label;
    const char* value; ///< null: any
    Ending ending;
    bool isInWords = false; ///< the value is the library's finding in words
};

// The more exact ones first.
constexpr EndingLine kEndingLines[] = {
    {"#RULE SUCCEEDDED", "ALL SIGNERS ALLOWED!", Ending::AllAllowed},
    {"#RULE SUCCEEDDED", nullptr, Ending::Accepted, true},
    {"#RULE1 FAILED", nullptr, Ending::Opposition, true},
    {"#RULE2 FAILED", nullptr, Ending::TotalAboveLimit, true},
    {"#RULE3 FAILED", nullptr, Ending::LargestAboveLimit, true},
    {"#RULE5 FAILED", "PROFIL MISMATCH", Ending::SingleSignature},
    {"#RULE5 FAILED", nullptr, Ending::DoubleSignature},
    {"#RULE6 FAILED", nullptr, Ending::HolderMissing},
    {"#RULE7 FAILED", nullptr, Ending::MustSignAlone},
    {"#RULE8 FAILED", nullptr, Ending::NotActive},
    {"Warning", "#Signer not found", Ending::NotConcerned},
    {"Warning", "#Signers with same certificates", Ending::SameCertificate},
};

struct Heading
{
    const char* title;
    unsigned int verdict;
};

constexpr Heading kHeadings[] = {
    {"CHECK SIGNATURES RULES NOT FOUND", 0},
    {"CHECK SIGNATURES RULES SUCCESS", 1},
    {"CHECK SIGNATURES RULES FAILED", 2},
};

/// Reads line by line; what a line means depends on the section that it stands in.
class Reader
{
public:
    std::vector<TracedCheck> Run(std::string_view text)
    {
        while (!text.empty())
        {
            const std::size_t end = std::min(text.find('\n'), text.size());
            Take(Read(text.substr(0, end)));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return std::move(m_checks);
    }

private:
    void Take(const Line& line)
    {
        if (line.isTitle)
        {
            TakeTitle(line.label, line.value);
        }
        else if (!m_checks.empty())
        {
            TakeValue(line);
        }
    }

    void TakeTitle(std::string_view title, std::string_view moment)
    {
        if (title == "CHECK SIGNATURES RULES")
        {
            m_checks.emplace_back().begun = moment;
            m_judged = 0;
        }
        if (m_checks.empty())
        {
            return;
        }
        TracedCheck& check = m_checks.back();
        m_rule = nullptr;
        if (title.substr(0, 16) == "CONTRACTS RULE #")
        {
            m_rule = &check.rules.emplace_back();
        }
        else if (title.substr(0, 22) == "CHECK CONTRACTS RULE #" && m_judged < check.rules.size())
        {
            m_rule = &check.rules[m_judged++];
        }
        for (const Heading& heading : kHeadings)
        {
            if (title == heading.title)
            {
                check.verdict = heading.verdict;
            }
        }
    }

    void TakeValue(const Line& line)
    {
        TracedCheck& check = m_checks.back();
        const std::string value(line.value);
        if (line.label == "FileName")
        {
            check.file = value;
        }
        else if (line.label == "#Signer")
        {
            TakeSigner(value);
        }
        else if (line.label == "Partner")
        {
            check.partner = value;
        }
        else if (line.label == "Service")
        {
            check.service = value;
        }
        else if (line.label == "Client")
        {
            check.client = value;
        }
        else if (line.label == "Protocol")
        {
            check.protocol = value;
        }
        else if (line.label == "Mode")
        {
            check.mode = value;
        }
        else if (line.label == "VEU")
        {
            check.isDistributed = value == "YES";
        }
        else if (line.label == "Error" || line.label == "Exception")
        {
            check.error = check.error.empty() ? value : check.error;
        }
        else if (m_rule != nullptr)
        {
            TakeRule(line, value);
        }
    }

    void TakeSigner(const std::string& value)
    {
        const std::size_t begin = std::min(value.find_first_not_of(" \t"), value.size());
        const std::string name = value.substr(begin, value.find_last_not_of(" \t") + 1 - begin);
        if (!name.empty())
        {
            m_checks.back().signers.push_back(name);
        }
    }

    void TakeRule(const Line& line, const std::string& value)
    {
        for (const RuleField& field : kRuleFields)
        {
            if (line.label == field.label)
            {
                m_rule->*field.field = value;
                return;
            }
        }
        TakeHolder(line, value);
        for (const EndingLine& each : kEndingLines)
        {
            if (line.label == each.label && (each.value == nullptr || value == each.value))
            {
                m_rule->ending = each.ending;
                m_rule->finding = each.isInWords ? value : std::string();
                return;
            }
        }
        if (line.label == "warning" && value == "too much signers !!!")
        {
            m_rule->hadTooManySigners = true;
        }
    }

    void TakeHolder(const Line& line, const std::string& value)
    {
        auto& found = m_rule->found;
        if (line.label == "HUID Signer")
        {
            found.push_back({value, {}, {}});
        }
        if (found.empty())
        {
            return;
        }
        FoundHolder& holder = found.back();
        if (line.label == "HUID FirstName")
        {
            holder.name = value;
        }
        else if (line.label == "HUID LastName")
        {
            holder.name += (holder.name.empty() || value.empty() ? "" : " ") + value;
        }
        else if (line.label == "HUID Certificate")
        {
            holder.certificate = value;
        }
        else if (line.label == "warning" && value == "signer already found")
        {
            // The certificate serves the other holder of the rule.
            found.pop_back();
        }
    }

    std::vector<TracedCheck> m_checks;
    TracedRule* m_rule = nullptr; ///< the rule of the section
    std::size_t m_judged = 0;
};

} // namespace

std::vector<TracedCheck> ReadTrace(std::string_view text)
{
    return Reader().Run(text);
}

} // namespace explain
