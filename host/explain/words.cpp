#include "host/explain/words.h"

#include "host/rulebook/amount_reading.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace explain
{

namespace
{

using Json = nlohmann::ordered_json;
using support::Language;

/// One text in both languages.
struct Both
{
    const char* english;
    const char* french;

    const char* In(Language language) const
    {
        return language == Language::French ? french : english;
    }
};

constexpr Both kRule = {"Rule ", "Règle "};
constexpr Both kOf = {" of ", " du contrat "};
constexpr Both kAsks = {"Asks", "Demande"};
constexpr Both kFound = {"Found", "Trouvé"};
constexpr Both kResult = {"Result", "Effet"};
constexpr Both kSigned = {"Signed", "Signé"};
constexpr Both kDecided = {"Decided", "Décision"};

constexpr Both kAnyone = {"anyone may sign", "tout signataire est admis"};
constexpr Both kAlone = {"%s alone", "%s seul"};
constexpr Both kTogether = {"%s and %s", "%s et %s"};
constexpr Both kNoHolder = {"nobody named", "personne de nommé"};
constexpr Both kTotalLimit = {", total of the file up to ", ", total du fichier jusqu'à "};
constexpr Both kLargestLimit = {", largest order up to ", ", plus grand ordre jusqu'à "};
constexpr Both kNoLimit = {", any amount", ", sans limite de montant"};
constexpr Both kOneSignature = {"; one signature (profile 0)", " ; une signature (profil 0)"};
constexpr Both kTwoSignatures = {"; two signatures (profile 1)", " ; deux signatures (profil 1)"};
constexpr Both kNoProfile = {"; any number of signatures (profile ",
                             " ; nombre de signatures libre (profil "};
constexpr Both kWritten = {" (written ", " (écrit "};
constexpr Both kEmptyLimit = {"0 (no limit is written)", "0 (aucune limite n'est écrite)"};
constexpr Both kNobodyFound = {"none of its holders among the signers",
                               "aucun de ses titulaires parmi les signataires"};
constexpr Both kCertificate = {" (certificate ", " (certificat "};
constexpr Both kNobody = {"nobody", "personne"};
constexpr Both kTooMany = {
    "There are more signers than a rule can use; that alone refuses nothing. ",
    "Il y a plus de signataires qu'une règle n'en admet ; cela seul ne "
    "refuse rien. "};

struct EndingWords
{
    Ending ending;
    const char* code; ///< for programs
    Both words;
};

constexpr EndingWords kEndingWords[] = {
    {Ending::Unknown,
     "unknown",
     {"The trace ends before the rule was judged.", "La trace s'arrête avant ce jugement."}},
    {Ending::Accepted, "accepted", {"ACCEPTS. ", "ACCEPTE. "}},
    {Ending::AllAllowed,
     "all-allowed",
     {"ACCEPTS: the contract allows all signers.", "ACCEPTE : le contrat admet tout signataire."}},
    {Ending::NotConcerned,
     "not-concerned",
     {"Not concerned: none of its holders has signed.",
      "Non concernée : aucun de ses titulaires n'a signé."}},
    {Ending::SameCertificate,
     "same-certificate",
     {"REFUSES: both holders were found by the same certificate.",
      "REFUSE : les deux titulaires ont été trouvés par le même certificat."}},
    {Ending::Opposition,
     "opposition",
     {"REFUSES: a holder who signed is in opposition. ",
      "REFUSE : un titulaire qui a signé est en opposition. "}},
    {Ending::TotalAboveLimit,
     "total-above-limit",
     {"REFUSES: the total of the file is above its limit. ",
      "REFUSE : le total du fichier dépasse sa limite. "}},
    {Ending::LargestAboveLimit,
     "largest-above-limit",
     {"REFUSES: the largest order is above its limit. ",
      "REFUSE : le plus grand ordre dépasse sa limite. "}},
    {Ending::SingleSignature,
     "single-signature",
     {"REFUSES: the profile asks for a single signature, and there are more.",
      "REFUSE : le profil demande une seule signature, et il y en a plusieurs."}},
    {Ending::DoubleSignature,
     "double-signature",
     {"REFUSES: the profile asks for two signatures, and there are fewer.",
      "REFUSE : le profil demande deux signatures, et il y en a moins."}},
    {Ending::HolderMissing,
     "holder-missing",
     {"Not concerned: several have signed, but not both of its holders.",
      "Non concernée : plusieurs ont signé, mais pas ses deux titulaires."}},
    {Ending::MustSignAlone,
     "must-sign-alone",
     {"Not concerned: its holder must sign alone, and others have signed, too.",
      "Non concernée : son titulaire doit signer seul, et d'autres ont signé aussi."}},
    {Ending::NotActive,
     "not-active",
     {"Not concerned: the contract is not active (in opposition).",
      "Non concernée : le contrat n'est pas actif (en opposition)."}},
};

constexpr Both kNotRun = {
    "NOT RUN: the check could not be run, or the trace ends before its verdict.",
    "NON EXÉCUTÉ : le contrôle n'a pu être exécuté, ou la trace s'arrête "
    "avant son verdict."};
constexpr std::array<Both, 3> kVerdicts = {{
    {"NO RULE: none of the rules concerns these signers, so nothing is decided (verdict 0).",
     "AUCUNE RÈGLE : aucune règle ne concerne ces signataires, rien n'est donc décidé (verdict "
     "0)."},
    {"ACCEPTED: a rule accepts, and none refuses (verdict 1).",
     "ACCEPTÉ : une règle accepte et aucune ne refuse (verdict 1)."},
    {"REFUSED: one refusal decides, whatever other rules say; the first one is told (verdict 2).",
     "REFUSÉ : un seul refus décide, quoi que disent les autres règles ; le premier est donné "
     "(verdict 2)."},
}};

constexpr Both kWouldDo = {"Accepted", "Accepté"};
constexpr Both kOr = {"or if ", "ou si "};
constexpr Both kIf = {"if ", "si "};
constexpr Both kAnd = {" and ", " et "};
constexpr Both kSignsToo = {" also signs", " signe aussi"};
constexpr Both kTotalAtMost = {"the total is at most ", "le total est au plus "};
constexpr Both kLargestAtMost = {"the largest order is at most ",
                                 "le plus grand ordre est au plus "};
constexpr Both kFreed = {"the opposition of holder %s is lifted",
                         "l'opposition du titulaire %s est levée"};
constexpr Both kActive = {"the opposition of contract %s is lifted",
                          "l'opposition du contrat %s est levée"};
constexpr Both kNoRemedy = {"by no three changes of further signers, smaller amounts and "
                            "oppositions lifted.",
                            "par aucun ensemble de trois changements : signataires de plus, "
                            "montants moindres, oppositions levées."};

constexpr Both kNotLookedFor = {"not found out: ", "non recherché : "};
constexpr Both kMayBeMore = {"or otherwise, which was not found out: ",
                             "ou autrement, ce qui n'a pas été recherché : "};
constexpr Both kInterrupted = {"the search was interrupted.", "la recherche a été interrompue."};
constexpr Both kLookAgain = {" The decision stands. signcheck simulate --explain looks for it "
                             "again, and records nothing.",
                             " La décision demeure. signcheck simulate --explain recommence la "
                             "recherche et n'enregistre rien."};

const EndingWords& WordsOf(Ending ending)
{
    return *std::find_if(std::begin(kEndingWords), std::end(kEndingWords),
                         [ending](const EndingWords& each) { return each.ending == ending; });
}

std::string Filled(std::string text, const std::vector<std::string>& values)
{
    std::size_t at = 0;
    for (const std::string& value : values)
    {
        at = text.find("%s", at);
        text.replace(at, 2, value);
        at += value.size();
    }
    return text;
}

std::int32_t Number(const std::string& text)
{
    return support::ToInt32(text.c_str());
}

std::string HoldersAsked(const TracedRule& rule, Language language)
{
    const bool isAlone = Number(rule.alone) != 0;
    if (isAlone || rule.huid2.empty() || rule.huid1.empty())
    {
        const std::string& huid = rule.huid1.empty() && !isAlone ? rule.huid2 : rule.huid1;
        if (huid.empty())
        {
            return kNoHolder.In(language);
        }
        return isAlone ? Filled(kAlone.In(language), {huid}) : huid;
    }
    return Filled(kTogether.In(language), {rule.huid1, rule.huid2});
}

// What a check compares with; the text of the column where that is something else.
std::string LimitText(const std::string& amount, Language language)
{
    const rulebook::AmountReading reading = rulebook::ReadingOf(amount);
    return reading.isRead ? amount
                          : reading.read + kWritten.In(language) + host::Quoted(amount) + ")";
}

std::string LimitAsked(const TracedRule& rule, Language language)
{
    constexpr std::int32_t kTotalLevel = 0;
    constexpr std::int32_t kLargestLevel = 1;
    const std::int32_t level = Number(rule.level);
    if (level != kTotalLevel && level != kLargestLevel)
    {
        return kNoLimit.In(language);
    }
    const Both& what = level == kTotalLevel ? kTotalLimit : kLargestLimit;
    return what.In(language) +
           (rule.amount.empty() ? kEmptyLimit.In(language) : LimitText(rule.amount, language));
}

std::string ProfileAsked(const TracedRule& rule, Language language)
{
    switch (Number(rule.profile))
    {
    case 0:
        return kOneSignature.In(language);
    case 1:
        return kTwoSignatures.In(language);
    default:
        return kNoProfile.In(language) + rule.profile + ")";
    }
}

std::string Asked(const TracedRule& rule, Language language)
{
    if (Number(rule.allHolders) != 0)
    {
        return kAnyone.In(language);
    }
    return HoldersAsked(rule, language) + LimitAsked(rule, language) + ProfileAsked(rule, language);
}

std::string Found(const TracedRule& rule, Language language)
{
    std::string words;
    for (const FoundHolder& holder : rule.found)
    {
        words += (words.empty() ? "" : kAnd.In(language)) + holder.name + " [" + holder.huid + "]";
        words += holder.certificate.empty() ? std::string()
                                            : kCertificate.In(language) + holder.certificate + ")";
    }
    return words.empty() ? kNobodyFound.In(language) : words;
}

// The library asks for holders in neither case.
bool LooksForHolders(const TracedRule& rule)
{
    return rule.ending != Ending::NotActive && rule.ending != Ending::AllAllowed &&
           rule.ending != Ending::Unknown;
}

Section SectionOf(const TracedRule& rule, std::size_t number, Language language)
{
    Section section = {kRule.In(language) + std::to_string(number) + kOf.In(language) + rule.cuid,
                       {{kAsks.In(language), Asked(rule, language)}}};
    if (LooksForHolders(rule))
    {
        section.lines.push_back({kFound.In(language), Found(rule, language)});
    }
    section.lines.push_back(
        {kResult.In(language), (rule.hadTooManySigners ? kTooMany.In(language) : "") +
                                   std::string(WordsOf(rule.ending).words.In(language)) +
                                   rule.finding});
    return section;
}

std::string InWords(const authority::Remedy& remedy, Language language)
{
    std::string words;
    const auto add = [&](const std::string& change)
    { words += (words.empty() ? "" : kAnd.In(language)) + change; };
    for (const std::string& label : remedy.furtherLabels)
    {
        add(label + kSignsToo.In(language));
    }
    const auto amount = [](double value)
    { return support::Utf8FromWide(support::AmountText(value)); };
    if (remedy.totalAtMost)
    {
        add(kTotalAtMost.In(language) + amount(*remedy.totalAtMost));
    }
    if (remedy.largestAtMost)
    {
        add(kLargestAtMost.In(language) + amount(*remedy.largestAtMost));
    }
    for (const std::string& label : remedy.freedLabels)
    {
        add(Filled(kFreed.In(language), {label}));
    }
    for (const std::string& cuid : remedy.activeContracts)
    {
        add(Filled(kActive.In(language), {cuid}));
    }
    return words;
}

} // namespace

std::vector<Section> Sections(const TracedCheck& check, Language language)
{
    std::string signers;
    for (const std::string& signer : check.signers)
    {
        signers += (signers.empty() ? "" : "; ") + signer;
    }
    signers = (signers.empty() ? kNobody.In(language) : signers) +
              std::string(check.isDistributed ? " (VEU)" : "");
    std::vector<Section> sections = {{"", {{kSigned.In(language), signers}}}};
    std::size_t number = 0;
    for (const TracedRule& rule : check.rules)
    {
        sections.push_back(SectionOf(rule, ++number, language));
    }
    const bool isKnown = check.verdict && *check.verdict < kVerdicts.size();
    sections.push_back(
        {"",
         {{kDecided.In(language),
           isKnown ? kVerdicts[*check.verdict].In(language)
                   : kNotRun.In(language) + (check.error.empty() ? "" : " " + check.error)}}});
    return sections;
}

const char* InterruptedSearch(Language language)
{
    return kInterrupted.In(language);
}

Section SectionOf(const std::vector<authority::Remedy>& remedies, const std::string& obstacle,
                  Language language)
{
    Section section;
    if (remedies.empty() && obstacle.empty())
    {
        section.lines.push_back({kWouldDo.In(language), kNoRemedy.In(language)});
    }
    for (const authority::Remedy& remedy : remedies)
    {
        const bool isFirst = section.lines.empty();
        section.lines.push_back(
            {isFirst ? kWouldDo.In(language) : "",
             (isFirst ? kIf : kOr).In(language) + InWords(remedy, language) + "."});
    }
    if (!obstacle.empty())
    {
        const bool isFirst = section.lines.empty();
        section.lines.push_back({isFirst ? kWouldDo.In(language) : "",
                                 (isFirst ? kNotLookedFor : kMayBeMore).In(language) + obstacle +
                                     kLookAgain.In(language)});
    }
    return section;
}

Json AsJson(const TracedCheck& check)
{
    Json object = {{"signers", check.signers},
                   {"distributed", check.isDistributed},
                   {"verdict", nullptr},
                   {"error", check.error},
                   {"rules", Json::array()}};
    if (check.verdict)
    {
        object["verdict"] = *check.verdict;
    }
    for (const TracedRule& rule : check.rules)
    {
        Json found = Json::array();
        for (const FoundHolder& holder : rule.found)
        {
            found.push_back({{"huid", holder.huid},
                             {"name", holder.name},
                             {"certificate", holder.certificate}});
        }
        object["rules"].push_back({{"contract", rule.cuid},
                                   {"huid1", rule.huid1},
                                   {"huid2", rule.huid2},
                                   {"allHolders", rule.allHolders},
                                   {"alone", rule.alone},
                                   {"amount", rule.amount},
                                   {"level", rule.level},
                                   {"profile", rule.profile},
                                   {"found", found},
                                   {"ending", WordsOf(rule.ending).code},
                                   {"finding", rule.finding}});
    }
    return object;
}

Json AsJson(const std::vector<authority::Remedy>& remedies)
{
    Json list = Json::array();
    for (const authority::Remedy& remedy : remedies)
    {
        Json object = {{"furtherSigners", remedy.furtherSigners},
                       {"totalAtMost", nullptr},
                       {"largestAtMost", nullptr},
                       {"holdersFreed", remedy.freedHuids},
                       {"contractsFreed", remedy.activeContracts}};
        if (remedy.totalAtMost)
        {
            object["totalAtMost"] = *remedy.totalAtMost;
        }
        if (remedy.largestAtMost)
        {
            object["largestAtMost"] = *remedy.largestAtMost;
        }
        list.push_back(std::move(object));
    }
    return list;
}

} // namespace explain
