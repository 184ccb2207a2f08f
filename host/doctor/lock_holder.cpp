#include "host/doctor/lock_holder.h"

#include "port/lock_file.h"
#include "port/program.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <cstdint>
#include <string_view>

namespace doctor
{

LockHolder HolderOf(const std::string& lock)
{
    constexpr std::string_view kProcess = ", process ";
    const std::string note =
        port::NoteOfLock(support::NarrowFromWide(support::WideFromUtf8(lock)).c_str());
    const std::size_t at = note.rfind(kProcess);
    const std::size_t machine = note.rfind(" on ");
    const bool isOfThisMachine = at != std::string::npos && machine != std::string::npos &&
                                 machine > at && note.substr(machine + 4) == port::MachineName();
    const auto process =
        isOfThisMachine ? support::ToInt64(note.c_str() + at + kProcess.size()) : std::int64_t{0};
    return {note, isOfThisMachine && !port::IsProcessRunning(static_cast<std::uint32_t>(process))};
}

} // namespace doctor
