#pragma once

#include "host/rulebook/rule_file.h"

#include <cstddef>
#include <optional>
#include <string>

namespace rulebook
{

/// The column that a text of a rule file goes to.
struct TextColumn
{
    const char* name;
    std::size_t longest; ///< in characters
    bool isNarrow;       ///< kept and compared in Windows-1252
    bool entersLookUps;  ///< stands in the statements of a check as it is
};

inline constexpr TextColumn kHuidColumn = {"HUID", 64, true, true};
inline constexpr TextColumn kHolderPartnerColumn = {"VPNAME", 8, true, false};
inline constexpr TextColumn kFirstNameColumn = {"FNAME", 255, false, false};
inline constexpr TextColumn kLastNameColumn = {"LNAME", 255, false, false};
inline constexpr TextColumn kOppositionColumn = {"OPPOSITION", 20, true, false};
inline constexpr TextColumn kCommonNameColumn = {"CN", 255, false, true};
inline constexpr TextColumn kSerialColumn = {"SERIAL", 64, true, false};
inline constexpr TextColumn kCuidColumn = {"CUID", 64, true, false};
inline constexpr TextColumn kPartnerColumn = {"VPNAME", 8, true, true};
inline constexpr TextColumn kServiceColumn = {"VFNAME", 8, true, true};
inline constexpr TextColumn kClientColumn = {"VCNAME", 8, true, true};
inline constexpr TextColumn kAmountColumn = {"AMOUNT", 32, true, false};

/// A certificate name as it is compared: in lower case, whatever the locale.
std::u32string InLowerCase(const std::string& utf8);

/// Adds problems about parts of a file, which it names by their path.
class FileChecker
{
public:
    FileChecker(const Places& places, Problems& problems) : m_places(places), m_problems(problems)
    {
    }

    void Wrong(const std::string& path, const std::string& what, const std::string& remedy);
    void Doubtful(const std::string& path, const std::string& what, const std::string& remedy);

    /// What the column would cut, lose or let out of its literal.
    void CheckText(const std::string& path, const std::string& text, const TextColumn& column);
    void CheckText(const std::string& path, const std::optional<std::string>& text,
                   const TextColumn& column);

    /// The same of a text that names somebody or something: blanks at its ends are hardly meant.
    void CheckName(const std::string& path, const std::string& text, const TextColumn& column);
    void CheckName(const std::string& path, const std::optional<std::string>& text,
                   const TextColumn& column);

    void CheckCertificate(const std::string& path, const Certificate& certificate);
    /// The number that a check makes of it must be the one that stands there.
    void CheckOpposition(const std::string& path, const std::optional<std::string>& opposition);
    void CheckAmount(const std::string& path, const std::string& amount);

    std::size_t LineOf(const std::string& path) const { return m_places.LineOf(path); }
    bool Stands(const std::string& path) const { return m_places.Has(path); }

private:
    const Places& m_places;
    Problems& m_problems;
};

} // namespace rulebook
