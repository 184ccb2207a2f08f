#include "host/rulebook/key_checker.h"

#include "host/text.h"

namespace rulebook
{

KeyChecker::KeyChecker(FileChecker& checker, const char* what,
                       const std::set<std::string>& database)
    : m_checker(checker), m_what(what)
{
    for (const std::string& key : database)
    {
        m_inLowerCase.emplace(InLowerCase(key), First{key, "of the database"});
    }
}

void KeyChecker::Check(const std::string& path, const std::string& key)
{
    if (key.empty())
    {
        return;
    }
    const std::size_t line = m_checker.LineOf(path);
    const auto [first, isNew] = m_lines.emplace(key, line);
    if (!isNew)
    {
        m_checker.Wrong(path,
                        std::string("the ") + m_what + " " + host::Quoted(key) +
                            " stands in line " + std::to_string(first->second) + " already.",
                        "Keep one of the two.");
        return;
    }
    const auto& like =
        m_inLowerCase.try_emplace(InLowerCase(key), First{key, "of line " + std::to_string(line)})
            .first->second;
    if (like.key != key)
    {
        m_checker.Doubtful(path,
                           host::Quoted(key) + " differs from " + m_what + " " +
                               host::Quoted(like.key) + " " + like.place +
                               " in letter case only: a check takes them for two.",
                           "Write both alike if one is meant, else give one another name.");
    }
}

} // namespace rulebook
