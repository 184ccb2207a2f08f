#include "host/explain/outlook.h"

#include "host/authority/forecast.h"
#include "host/explain/obstacle.h"

#include <nlohmann/json.hpp>

namespace explain
{

namespace
{

using support::Language;

bool IsFrench(Language language)
{
    return language == Language::French;
}

} // namespace

Outlook OutlookOf(scratch::Copy& copy, const authority::RemedyTask& task)
{
    Outlook outlook;
    outlook.obstacle = ObstacleTo(
        [&]
        {
            scratch::Judge judge(copy, task.kind);
            outlook.canBeCompleted = authority::CanBeCompleted(judge, task.book, task.order);
        });
    return outlook;
}

const char* HopelessInWords(Language language)
{
    return IsFrench(language)
               ? "personne ne peut compléter cet ordre, quel que soit le prochain signataire. "
                 "Arrêtez-le maintenant, ou corrigez le contrat : signcheck map et signcheck lint "
                 "montrent pourquoi."
               : "nobody can complete this order, whoever signs next. Stop it now, or correct the "
                 "contract: signcheck map and signcheck lint show why.";
}

std::vector<Section> SectionsOf(const Outlook& outlook, Language language)
{
    if (!outlook.canBeCompleted)
    {
        const std::string words = IsFrench(language)
                                      ? "non recherché si l'ordre peut encore être complété : "
                                      : "not found out whether the order can still be completed: ";
        const char* const remedy =
            IsFrench(language) ? " signcheck pending recommence la recherche et n'enregistre rien."
                               : " signcheck pending looks for it again, and records nothing.";
        return {
            {"", {{IsFrench(language) ? "Suite" : "Outlook", words + outlook.obstacle + remedy}}}};
    }
    if (*outlook.canBeCompleted)
    {
        return {};
    }
    return {{"", {{IsFrench(language) ? "ATTENTION" : "WARNING", HopelessInWords(language)}}}};
}

void AddTo(nlohmann::ordered_json& object, const std::optional<Outlook>& outlook)
{
    object["canBeCompleted"] = nullptr;
    if (outlook && outlook->canBeCompleted)
    {
        object["canBeCompleted"] = *outlook->canBeCompleted;
    }
    if (outlook && !outlook->obstacle.empty())
    {
        object["canBeCompletedObstacle"] = outlook->obstacle;
    }
}

} // namespace explain
