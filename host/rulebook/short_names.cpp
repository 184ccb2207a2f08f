#include "host/rulebook/short_names.h"

#include "host/rulebook/neighbours.h"
#include "host/text.h"

namespace rulebook
{

namespace
{

constexpr std::size_t kKeyLength = 8;

} // namespace

void ShortNames::Firsts::Add(const First& first)
{
    cut.try_emplace(host::CutTo(first.name, kKeyLength), first);
    inLowerCase.try_emplace(InLowerCase(first.name), first);
}

void ShortNames::AddOfDatabase(const std::string& name, const Contract& contract)
{
    m_ofDatabase.Add({name, "of " + InDatabase(contract)});
}

void ShortNames::Check(FileChecker& checker, const std::string& path, const std::string& name)
{
    Compare(checker, path, name, m_ofFile);
    Compare(checker, path, name, m_ofDatabase);
    m_ofFile.Add({name, "of line " + std::to_string(checker.LineOf(path))});
}

void ShortNames::Compare(FileChecker& checker, const std::string& path, const std::string& name,
                         const Firsts& firsts)
{
    const auto same = firsts.cut.find(host::CutTo(name, kKeyLength));
    if (same != firsts.cut.end() && same->second.name != name)
    {
        checker.Wrong(path,
                      host::Quoted(name) + " is the same as " + host::Quoted(same->second.name) +
                          " " + same->second.place +
                          " in its first 8 characters, and a check compares no more.",
                      "Give it a name that differs within 8 characters.");
        return;
    }
    const auto like = firsts.inLowerCase.find(InLowerCase(name));
    if (like != firsts.inLowerCase.end() && like->second.name != name)
    {
        checker.Doubtful(path,
                         host::Quoted(name) + " differs from " + host::Quoted(like->second.name) +
                             " " + like->second.place +
                             " in letter case only: a check takes them for two.",
                         "Write both alike if one is meant, else give one another name.");
    }
}

} // namespace rulebook
