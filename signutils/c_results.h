#pragma once

#include "signutils/c_arguments.h"
#include "signutils/signutils_c.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace signutils
{

/// Where a call puts a result. It holds the value of a failed call from the beginning, so that a
/// host that does not look at the status reads nothing that was not written.
template <typename T>
class Result
{
public:
    Result(const char* name, T* place, T failed) noexcept : m_name(name), m_place(place)
    {
        if (m_place != nullptr)
        {
            *m_place = failed;
        }
    }

    /// The place. Refuses a missing one, so it is asked for before the work is done.
    T& Place() const
    {
        if (m_place == nullptr)
        {
            RefuseNull(m_name, "the address of the result");
        }
        return *m_place;
    }

private:
    const char* m_name;
    T* m_place;
};

using TextResult = Result<const char*>;

/// The size of a record in its first version, which no host falls below. It stays when the record
/// grows.
template <typename Record>
inline constexpr std::uint32_t kFirstSize = 0;
template <>
inline constexpr std::uint32_t kFirstSize<SignUtilsCheck> = 112;
template <>
inline constexpr std::uint32_t kFirstSize<SignUtilsHolder> = 40;
template <>
inline constexpr std::uint32_t kFirstSize<SignUtilsAmounts> = 40;
template <>
inline constexpr std::uint32_t kFirstSize<SignUtilsHandOff> = 24;

/// Where a call puts a record. The host's header may be older or newer than the library: bytes are
/// written up to the size that it says, and what only one side knows is 0.
template <typename Record>
class RecordResult
{
public:
    /// `failed` is what a failed call gives, its size that of the record.
    RecordResult(const char* name, Record* place, const Record& failed) noexcept
        : m_name(name), m_place(place), m_room(place == nullptr ? 0 : place->size)
    {
        if (IsRoomSound())
        {
            Fill(failed);
        }
    }

    /// Asked before the work is done.
    void Require() const
    {
        if (m_place == nullptr)
        {
            RefuseNull(m_name, "the address of the record");
        }
        if (!IsRoomSound())
        {
            RefuseValue(m_name, "its size is " + std::to_string(m_room) +
                                    ". Set it to the size of the record before each call.");
        }
    }

    void Fill(const Record& record) const noexcept
    {
        const std::uint32_t known = std::min(m_room, static_cast<std::uint32_t>(sizeof(Record)));
        std::memset(static_cast<void*>(m_place), 0, m_room);
        std::memcpy(static_cast<void*>(m_place), &record, known);
        m_place->size = known;
    }

private:
    // A size that nobody has set is mostly far larger than a record will ever be.
    static constexpr std::uint32_t kLargest = 4096;
    static_assert(kFirstSize<Record> != 0 && kFirstSize<Record> <= sizeof(Record));

    bool IsRoomSound() const noexcept { return m_room >= kFirstSize<Record> && m_room <= kLargest; }

    const char* m_name;
    Record* m_place;
    std::uint32_t m_room;
};

} // namespace signutils
