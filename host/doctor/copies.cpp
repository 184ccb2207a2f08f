#include "host/doctor/leftovers.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/doctor/local_time.h"
#include "host/scratch/leftovers.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/files.h"
#include "port/program.h"
#include "support/codepage.h"

namespace doctor
{

namespace
{

constexpr const char* kCopiesCheck = "copies";

using scratch::Leftover;

std::int64_t AgeOf(const Leftover& copy)
{
    const auto made = ClockSeconds(copy.parts.made);
    return made ? ClockSecondsNow() - *made : 0;
}

bool Remove(const Bank* bank, const Leftover& copy)
{
    if (copy.IsFile())
    {
        return DeleteFileA(support::NarrowFromWide(support::WideFromUtf8(copy.name)).c_str()) != 0;
    }
    return database::GuardDatabase(
        [&] { bank->database.ExecuteSQLW(support::WideFromUtf8(copy.remedy).c_str()); },
        [](const CDBException&) {}, [] {});
}

Finding Told(const Leftover& copy)
{
    return {kCopiesCheck, Outcome::Warning,
            copy.kind + " " + copy.name + ", " + AgeInWords(AgeOf(copy)) + " old: its process " +
                std::to_string(copy.parts.process) + " of user " + copy.parts.user +
                " does not run on this machine",
            (copy.IsFile() ? "Delete the file" : "Run " + copy.remedy) +
                ", or signcheck doctor --remove-leftovers 1d."};
}

} // namespace

Findings CheckCopies(const Bank* bank, std::optional<std::chrono::seconds> removalAge)
{
    std::vector<Leftover> copies = scratch::LeftoverFiles();
    if (bank != nullptr)
    {
        for (Leftover& each : scratch::LeftoversIn(bank->database, bank->where))
        {
            copies.push_back(std::move(each));
        }
    }
    Findings findings;
    std::size_t inUse = 0;
    std::size_t removed = 0;
    for (const Leftover& copy : copies)
    {
        if (port::IsProcessRunning(copy.parts.process))
        {
            ++inUse;
        }
        else if (removalAge && AgeOf(copy) > removalAge->count() && Remove(bank, copy))
        {
            ++removed;
        }
        else
        {
            findings.push_back(Told(copy));
        }
    }
    if (findings.empty())
    {
        std::string words = "no copy of rules and no trace was left behind";
        words += removed == 0 ? "" : "; " + host::Counted(removed, "was", "were") + " removed";
        words += inUse == 0 ? "" : "; " + host::Counted(inUse, "is", "are") + " in use";
        findings.push_back({kCopiesCheck, Outcome::Ok, words, ""});
    }
    return findings;
}

} // namespace doctor
