#include "host/batch/readiness.h"

namespace batch
{

void Readiness::Told(const std::string& name, Time now)
{
    Candidate& candidate = m_waiting[name];
    candidate.wasTold = true;
    candidate.due = now;
}

void Readiness::Found(const std::string& name, Time now)
{
    m_waiting.try_emplace(name, Candidate{now, false, std::nullopt});
}

void Readiness::Postpone(const std::string& name, Time when)
{
    m_waiting[name].due = when;
}

std::vector<std::string> Readiness::Due(Time now) const
{
    std::vector<std::string> names;
    for (const auto& [name, candidate] : m_waiting)
    {
        if (candidate.due <= now)
        {
            names.push_back(name);
        }
    }
    return names;
}

bool Readiness::IsWhole(const std::string& name, const Look& look, Time now)
{
    const auto found = m_waiting.find(name);
    if (found == m_waiting.end())
    {
        return false;
    }
    Candidate& candidate = found->second;
    if (!look.version)
    {
        m_waiting.erase(found);
        return false;
    }
    const bool isSettled = candidate.version == look.version;
    if (!look.hasWriter && (candidate.wasTold || isSettled))
    {
        m_waiting.erase(found);
        return true;
    }
    // Who writes on tells when he closes it, or the file stays the same for a while.
    candidate.wasTold = candidate.wasTold && !look.hasWriter;
    candidate.version = look.version;
    candidate.due = now + m_settle;
    return false;
}

} // namespace batch
