// What does judging the rules cost, with every text of the decisions and without a database? The
// holder look-ups of this program answer from two constants in the place of the real ones. The
// floor makes the same decisions and the same texts of strings that own their characters, joined by
// hand, without a catalogue of messages, without a trace, without locks.

#include "benchmarks/rounds.h"
#include "benchmarks/setting.h"
#include "rules/rule_evaluation.h"
#include "signers/holder_lookup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <cwchar>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

struct Holder
{
    const char* huid;
    const wchar_t* certificate;
    const wchar_t* lastName;
    const wchar_t* firstName;
};

constexpr Holder kHolders[] = {
    {"FIRST", L"First Signer", L"N\u00FA\u00F1ez Ib\u00E1\u00F1ez", L"Mar\u00EDa Jos\u00E9"},
    {"SECOND", L"Second Signer", L"Mu\u00F1oz de la Pe\u00F1a", L"Andr\u00E9s"},
};

const Holder& HolderOf(const char* huid)
{
    return std::strcmp(huid, kHolders[0].huid) == 0 ? kHolders[0] : kHolders[1];
}

} // namespace

namespace signers
{

int GetSignerNames(const HolderDirectory&, const wchar_t*, wchar_t*, wchar_t*)
{
    return 0;
}

int GetSignerInfos(const HolderDirectory&, const char* holderId, int& notOpposition,
                   wchar_t* certificateName, wchar_t* firstName, wchar_t* lastName,
                   TArray<signerInfo>* signers)
{
    const Holder& holder = HolderOf(holderId);
    std::wcscpy(certificateName, holder.certificate);
    std::wcscpy(firstName, holder.firstName);
    std::wcscpy(lastName, holder.lastName);
    notOpposition = 1;
    for (int i = 0; i < signers->GetCount(); ++i)
    {
        signerInfo& entry = *signers->GetAt(i);
        if (entry.firstName.IsEmpty() && entry.certificate == holder.certificate)
        {
            entry.firstName = firstName;
            entry.lastName = lastName;
            return 1;
        }
    }
    return 0;
}

} // namespace signers

namespace
{

constexpr double kTotal = 45000.00;
constexpr double kLargest = 2500.50;

// The floor.

struct Signer
{
    std::wstring certificate;
    std::wstring lastName;
    std::wstring firstName;
};

struct Rule
{
    std::string cuid;
    std::string huid1;
    std::string huid2;
    double amount;
};

struct Decision
{
    std::string cuid;
    std::wstring reasonText;
    Signer signer1;
    Signer signer2;
    int status = 0;
};

struct Findings
{
    std::vector<Decision> decisions;
    std::wstring journal;
};

Signer FindHolder(const std::string& huid, std::vector<Signer>& working)
{
    const Holder& holder = HolderOf(huid.c_str());
    for (Signer& entry : working)
    {
        if (entry.firstName.empty() && entry.certificate == holder.certificate)
        {
            entry.firstName = holder.firstName;
            entry.lastName = holder.lastName;
            return entry;
        }
    }
    return {};
}

// As many places as the amount has, at least two.
std::wstring AmountText(double amount)
{
    std::array<char, 400> text{};
    const char* end =
        std::to_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed, 6)
            .ptr;
    const char* const least = end - 4;
    while (end > least && end[-1] == '0')
    {
        --end;
    }
    return std::wstring(static_cast<const char*>(text.data()), end);
}

std::wstring HolderText(const Signer& signer)
{
    return signer.lastName + L" " + signer.firstName + L"/" + signer.certificate;
}

Findings JudgePlainly(const std::vector<Rule>& rules, const std::vector<Signer>& signers)
{
    Findings findings;
    for (const Rule& rule : rules)
    {
        std::vector<Signer> working = signers;
        Decision decision;
        decision.cuid = rule.cuid;
        decision.signer1 = FindHolder(rule.huid1, working);
        decision.signer2 = FindHolder(rule.huid2, working);
        const bool within = !(kTotal > rule.amount);
        decision.status = within ? 1 : 2;
        decision.reasonText = HolderText(decision.signer1) + L", " + HolderText(decision.signer2) +
                              L": total " + AmountText(kTotal) +
                              (within ? L" within " : L" over ") + AmountText(rule.amount);
        findings.journal += decision.reasonText + L"\r\n";
        findings.decisions.push_back(std::move(decision));
    }
    return findings;
}

// The library.

struct Case
{
    TArray<signerInfo> signers{128};
    TArray<cuidRule> rules{128};
    std::vector<Rule> plainRules;
    std::vector<Signer> plainSigners;
};

void AddRule(Case& target, double amount)
{
    cuidRule rule{};
    std::strcpy(rule.cuid, "IBEREXPO-CCT-9");
    rule.active = 1;
    rule.amount = amount;
    rule.profile = 1;
    std::strcpy(rule.holder1.huid, kHolders[0].huid);
    std::strcpy(rule.holder2.huid, kHolders[1].huid);
    target.rules.Add(rule);
    target.plainRules.push_back({rule.cuid, kHolders[0].huid, kHolders[1].huid, amount});
}

void AddSigners(Case& target)
{
    for (const Holder& holder : kHolders)
    {
        signerInfo signer;
        signer.certificate = holder.certificate;
        target.signers.Add(signer);
        target.plainSigners.push_back({holder.certificate, L"", L""});
    }
}

struct Judged
{
    explicit Judged(int rules) : decisions(rules) {}

    TArray<ruleSign> decisions;
    TSimpleStringW journal;
};

void Judge(Case& input, Judged& judged)
{
    const rules::SigningFacts facts = {{nullptr, nullptr},
                                       input.signers,
                                       input.signers.GetCount(),
                                       L"First Signer;Second Signer",
                                       false,
                                       kTotal,
                                       kLargest};
    rules::EvaluateRules(facts, input.rules, judged.decisions, judged.journal);
}

void CompareContenders(Case& input)
{
    Judged judged(1);
    Judge(input, judged);
    const Findings plain = JudgePlainly(input.plainRules, input.plainSigners);
    bool same = plain.journal == judged.journal.SafeGetString() &&
                static_cast<int>(plain.decisions.size()) == judged.decisions.GetCount();
    for (int i = 0; same && i < judged.decisions.GetCount(); ++i)
    {
        const Decision& left = plain.decisions[static_cast<std::size_t>(i)];
        const ruleSign& right = *judged.decisions.GetAt(i);
        same = left.status == right.status && right.reasonText == left.reasonText.c_str() &&
               right.signer1.firstName == left.signer1.firstName.c_str() &&
               right.signer2.lastName == left.signer2.lastName.c_str() &&
               right.cuid == left.cuid.c_str();
    }
    if (!same)
    {
        throw std::runtime_error("the contenders do not decide the same");
    }
}

void Compare(int rules)
{
    Case input;
    AddSigners(input);
    for (int i = 0; i < rules; ++i)
    {
        AddRule(input, i % 2 == 0 ? 75000.00 : 45000.125);
    }
    CompareContenders(input);
    constexpr int kDecisions = 40'000;
    const int times = kDecisions / rules;
    std::printf("\n%d rules, %d times a round\n", rules, times);
    benchmarks::TimeEachInTurn(
        {{"strings of their own, by hand",
          [&]
          {
              std::uint64_t sum = 0;
              for (int i = 0; i < times; ++i)
              {
                  sum += JudgePlainly(input.plainRules, input.plainSigners).journal.size();
              }
              return sum;
          }},
         {"EvaluateRules",
          [&]
          {
              std::uint64_t sum = 0;
              for (int i = 0; i < times; ++i)
              {
                  Judged judged(rules);
                  Judge(input, judged);
                  sum += judged.journal.GetLength();
              }
              return sum;
          }}},
        static_cast<std::uint64_t>(times));
}

int Run()
{
    benchmarks::PrintSetting("What does judging rules cost, with its texts, without a database?");
    Compare(1);
    Compare(2);
    Compare(20);
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
