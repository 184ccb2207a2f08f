#include "tests/model/plain_rules.h"

#include "tests/model/plain_amounts.h"
#include "tests/model/plain_messages.h"
#include "tests/model/plain_texts.h"

#include <algorithm>
#include <cmath>

namespace model
{

namespace
{

constexpr std::size_t kNameLength = 8;
constexpr std::size_t kRecordText = 255;

/// The contract that a session names, as the statements do.
struct Wanted
{
    Text partner;
    Text service;
    Text client;
    std::int64_t protocol;
    std::int64_t server;
    std::int64_t type;
};

// Type and protocol are 32-bit numbers that the statement writes with their sign.
std::int64_t SignedNumber(std::uint64_t number)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

bool Find(const Session& session, Wanted& wanted)
{
    const NullableText partner = LiteralValue(Cut(session.partner, kNameLength));
    const NullableText service = LiteralValue(Cut(session.service, kNameLength));
    const NullableText client = LiteralValue(Cut(session.client, kNameLength));
    if (!partner || !service || !client)
    {
        return false;
    }
    wanted = {*partner,
              *service,
              *client,
              SignedNumber(session.protocol),
              session.serverMode != 0 ? 1 : 0,
              SignedNumber(session.contractType)};
    return true;
}

bool Matches(const ContractKey& key, const Wanted& wanted)
{
    return key.partner == wanted.partner && key.service == wanted.service &&
           key.client == wanted.client && key.protocol == wanted.protocol &&
           key.server == wanted.server;
}

Text RecordText(const NullableText& text)
{
    return Cut(ThroughCodePage(text.value_or(Text())), kRecordText);
}

void LoadLines(const Tables& tables, const Wanted& wanted, std::vector<Rule>& rules)
{
    for (const CurrentRow& contract : tables.current)
    {
        if (!contract.cuid || contract.type != wanted.type || !Matches(contract.key, wanted))
        {
            continue;
        }
        for (const RuleRow& line : tables.rules)
        {
            if (line.cuid != *contract.cuid)
            {
                continue;
            }
            Rule rule;
            rule.cuid = RecordText(contract.cuid);
            rule.active = IntegerOf(contract.opposition) == 0;
            rule.allHolders = IntegerOf(contract.allHolders) != 0;
            rule.alone = IntegerOf(line.alone) != 0;
            rule.limit = LimitOf(line.amount);
            rule.tlevel = IntegerOf(line.tlevel);
            rule.profile = IntegerOf(contract.profile);
            rule.huid1 = RecordText(line.huid1);
            rule.huid2 = RecordText(line.huid2);
            rules.push_back(rule);
        }
    }
}

void LoadContracts(const Tables& tables, const Wanted& wanted, std::vector<Rule>& rules)
{
    for (const ContractRow& contract : tables.contracts)
    {
        if (Matches(contract.key, wanted))
        {
            Rule rule;
            rule.cuid = RecordText(contract.cuid);
            rule.active = IntegerOf(contract.opposition) == 0;
            rule.allHolders = IntegerOf(contract.allHolders) != 0;
            rules.push_back(rule);
        }
    }
}

/// Whether the query failed, and with it everything behind the rows that it had read.
bool CutTo(std::size_t read, std::vector<Rule>& rules)
{
    if (read == kWhole)
    {
        return false;
    }
    rules.resize(std::min(read, rules.size()));
    return true;
}

/// One rule on its way to a decision.
class Judgement
{
public:
    Judgement(const Tables& tables, const Rule& rule, const Case& given, Account& account)
        : m_tables(tables), m_rule(rule), m_given(given), m_account(account),
          m_working(given.signers), m_count(given.signers.size()), m_veu(given.session.veu)
    {
        m_decision.controlType = rule.tlevel;
        m_one.huid = rule.huid1;
        m_two.huid = rule.huid2;
    }

    /// True when there is a decision.
    bool Decide();
    const Decision& Result() const { return m_decision; }

private:
    bool AllowAll();
    void TakeNames(std::size_t index, Signer& signer);
    void FindHolders();
    bool Undecided();
    bool Fail();
    bool FailOpposition(const Holder& holder);
    bool FailProfile(unsigned int number, const Text& trace, Outcome outcome);
    bool FailAmount(unsigned int one, unsigned int two, const Text& trace);
    bool Succeed();
    bool BreaksProfile();
    bool BreaksAmount();
    Text HolderMessage(unsigned int one, unsigned int two, double shown) const;
    const Holder& OnlyHolder() const { return m_r1 ? m_one : m_two; }
    void Journal(const Text& text) { m_account.journal += text + L"\r\n"; }
    void NoteLimit(double amount);

    const Tables& m_tables;
    const Rule& m_rule;
    const Case& m_given;
    Account& m_account;
    std::vector<Signer> m_working;
    std::size_t m_count;
    bool m_veu;
    Holder m_one;
    Holder m_two;
    bool m_r1 = false;
    bool m_r2 = false;
    Decision m_decision;
};

void Judgement::TakeNames(std::size_t index, Signer& signer)
{
    const Text& certificate = m_given.signers[index].certificate;
    Text first;
    Text last;
    if (FindNames(m_tables, certificate, first, last, m_account))
    {
        signer = {certificate, last, first};
    }
}

bool Judgement::AllowAll()
{
    m_account.Trace(L"#RULE SUCCEEDDED", L"ALL SIGNERS ALLOWED!");
    m_account.Note(Outcome::SuccessAllHolders);
    m_decision.message = Message(1807);
    if (m_count >= 1)
    {
        TakeNames(0, m_decision.signer1);
    }
    if (m_count >= 2)
    {
        TakeNames(1, m_decision.signer2);
    }
    Journal(m_decision.message);
    return true;
}

void Judgement::FindHolders()
{
    m_r1 = FindSigner(m_tables, m_one, m_working, m_account);
    if (m_r1)
    {
        m_decision.signer1 = {m_one.certificate, m_one.lastName, m_one.firstName};
    }
    m_r2 = !m_rule.alone && FindSigner(m_tables, m_two, m_working, m_account);
    if (m_r2)
    {
        m_decision.signer2 = {m_two.certificate, m_two.lastName, m_two.firstName};
    }
}

bool Judgement::Fail()
{
    m_decision.failed = true;
    return true;
}

bool Judgement::FailOpposition(const Holder& holder)
{
    m_decision.reasonCode = L"AM02";
    m_decision.reasonText = Message(1800, {holder.lastName, holder.firstName, holder.certificate,
                                           AmountInMessage(m_given.total), L""});
    m_account.Trace(L"#RULE1 FAILED", m_decision.reasonText);
    m_account.Note(Outcome::Rule1);
    Journal(m_decision.reasonText);
    return Fail();
}

bool Judgement::FailProfile(unsigned int number, const Text& trace, Outcome outcome)
{
    m_account.Trace(L"#RULE5 FAILED", trace);
    m_account.Note(Outcome::Rule5);
    m_account.Note(outcome);
    m_decision.reasonCode = L"NARR";
    m_decision.reasonText = Message(1816);
    m_decision.message = Message(number, {m_given.signerList});
    Journal(m_decision.message);
    return Fail();
}

Text Judgement::HolderMessage(unsigned int one, unsigned int two, double shown) const
{
    const Text amount = AmountInMessage(shown);
    const Text limit = AmountInMessage(m_rule.limit);
    if (m_r1 && m_r2)
    {
        return Message(two, {m_one.lastName, m_one.firstName, m_one.certificate, m_two.lastName,
                             m_two.firstName, m_two.certificate, amount, L"", limit, L""});
    }
    const Holder& holder = OnlyHolder();
    return Message(
        one, {holder.lastName, holder.firstName, holder.certificate, amount, L"", limit, L""});
}

bool Judgement::FailAmount(unsigned int one, unsigned int two, const Text& trace)
{
    m_decision.reasonCode = L"AM02";
    m_decision.reasonText = HolderMessage(one, two, m_given.total);
    m_account.Trace(trace, m_decision.reasonText);
    Journal(m_decision.reasonText);
    return Fail();
}

void Judgement::NoteLimit(double amount)
{
    if (amount == m_rule.limit)
    {
        m_account.Note(Outcome::LimitMetExactly);
    }
    else if (amount > m_rule.limit && amount - m_rule.limit < 0.000002)
    {
        m_account.Note(Outcome::LimitPassedByAUnit);
    }
}

bool Judgement::Succeed()
{
    const bool byOrder = m_rule.tlevel == 1;
    const bool both = m_r1 && m_r2;
    const double shown = byOrder && !both ? m_given.largest : m_given.total;
    m_decision.reasonText = HolderMessage(byOrder ? 1823 : 1803, 1822, shown);
    m_account.Trace(L"#RULE SUCCEEDDED", m_decision.reasonText);
    m_account.Note(
        both ? Outcome::SuccessTwoHolders
             : (byOrder ? Outcome::SuccessOneHolderOrder : Outcome::SuccessOneHolderTotal));
    Journal(m_decision.reasonText);
    return true;
}

/// The checks between finding the holders and the profile; true when the rule ends there without a
/// decision.
bool Judgement::Undecided()
{
    if (m_count < 2)
    {
        return false;
    }
    if (m_count > 2 && !m_veu)
    {
        m_account.Trace(L"warning", L"too much signers !!!");
        m_account.Note(Outcome::WarnTooManySigners);
        m_decision.message = Message(1812);
        Journal(m_decision.message);
    }
    if (m_rule.alone && !m_veu)
    {
        m_account.Trace(L"#RULE7 FAILED", L"sign alone error");
        m_account.Note(Outcome::Rule7);
        Journal(Message(1817));
        return true;
    }
    if (!(m_r1 && m_r2) && !m_veu)
    {
        m_account.Trace(L"#RULE6 FAILED", L"R\u00E8gle manquantes");
        m_account.Note(Outcome::Rule6);
        Journal(Message(1809, {m_given.signerList}));
        return true;
    }
    return false;
}

bool Judgement::BreaksProfile()
{
    if (m_rule.profile == 0 && m_count > 1)
    {
        return FailProfile(1815, L"PROFIL MISMATCH", Outcome::ProfileMismatch);
    }
    if (m_rule.profile == 1 && m_count < 2 && !m_veu)
    {
        return FailProfile(1808, L"DOUBLE SIGNATURE EXIG\u00C9E", Outcome::DoubleRequired);
    }
    return false;
}

bool Judgement::BreaksAmount()
{
    if (m_rule.tlevel != 0 && m_rule.tlevel != 1)
    {
        return false;
    }
    const bool byOrder = m_rule.tlevel == 1;
    const bool both = m_r1 && m_r2;
    const double amount = byOrder ? m_given.largest : m_given.total;
    NoteLimit(amount);
    if (!(amount > m_rule.limit))
    {
        return false;
    }
    if (byOrder)
    {
        m_account.Note(Outcome::Rule3);
        m_account.Note(both ? Outcome::OrderAboveTwoHolders : Outcome::OrderAboveOneHolder);
        return FailAmount(1802, 1821, L"#RULE3 FAILED");
    }
    m_account.Note(Outcome::Rule2);
    m_account.Note(both ? Outcome::TotalAboveTwoHolders : Outcome::TotalAboveOneHolder);
    return FailAmount(1801, 1820, L"#RULE2 FAILED");
}

bool Judgement::Decide()
{
    if (!m_rule.active)
    {
        m_account.Trace(L"#RULE8 FAILED", L"CONTRACT NOT ACTIVE!");
        m_account.Note(Outcome::Rule8);
        Journal(Message(1819));
        return false;
    }
    if (m_rule.allHolders)
    {
        return AllowAll();
    }
    FindHolders();
    if (m_r1 && m_r2 && SameCertificateName(m_one.certificate, m_two.certificate))
    {
        m_account.Trace(L"Warning", L"#Signers with same certificates");
        m_account.Note(Outcome::SameCertificate);
        m_decision.message = Message(1818, {m_one.firstName, m_one.lastName, m_one.certificate,
                                            m_two.firstName, m_two.lastName});
        Journal(m_decision.message);
        return Fail();
    }
    if (m_r1 && !m_one.free)
    {
        return FailOpposition(m_one);
    }
    if (!m_r1 && !m_r2)
    {
        m_account.Trace(L"Warning", L"#Signer not found");
        m_account.Note(Outcome::WarnSignerNotFound);
        return false;
    }
    if (m_r2 && !m_two.free)
    {
        m_account.Note(Outcome::OppositionOfSecond);
        return FailOpposition(m_two);
    }
    if (Undecided())
    {
        return false;
    }
    return BreaksProfile() || BreaksAmount() || Succeed();
}

} // namespace

bool LoadRules(const Tables& tables, const Session& session, std::vector<Rule>& rules,
               Account& account)
{
    Wanted wanted;
    if (!Find(session, wanted))
    {
        account.Note(Outcome::RulesRefused);
        return false;
    }
    LoadLines(tables, wanted, rules);
    if (CutTo(account.mishaps.ruleLines, rules))
    {
        return false;
    }
    if (rules.empty())
    {
        LoadContracts(tables, wanted, rules);
        if (CutTo(account.mishaps.contracts, rules))
        {
            return false;
        }
        if (!rules.empty())
        {
            account.Note(Outcome::Fallback);
        }
    }
    return true;
}

std::vector<Decision> Judge(const Tables& tables, const std::vector<Rule>& rules, const Case& given,
                            Account& account)
{
    std::vector<Decision> decisions;
    for (const Rule& rule : rules)
    {
        Judgement judgement(tables, rule, given, account);
        if (judgement.Decide())
        {
            decisions.push_back(judgement.Result());
        }
    }
    return decisions;
}

std::uint32_t VerdictOf(const std::vector<Decision>& decisions, Text& reasonCode, Text& reasonText)
{
    for (const Decision& decision : decisions)
    {
        if (decision.failed)
        {
            reasonCode = decision.reasonCode;
            reasonText = decision.reasonText;
            return 2;
        }
    }
    return decisions.empty() ? 0 : 1;
}

} // namespace model
