#pragma once

#include "host/rulebook/text_checks.h"

#include <map>
#include <string>

namespace rulebook
{

/// Names of one kind, partners, services or clients. A column and a check have their first eight
/// characters and no more; those that differ in letter case are two to a check.
class ShortNames
{
public:
    void AddOfDatabase(const std::string& name, const Contract& contract);

    /// Tells which of those before, or of the database, the name is taken or mistaken for.
    void Check(FileChecker& checker, const std::string& path, const std::string& name);

private:
    struct First
    {
        std::string name;
        std::string place; ///< "of line 3", "of contract 'C-1001' of the database"
    };

    /// Those that were there first, by what they must differ in.
    struct Firsts
    {
        void Add(const First& first);

        std::map<std::string, First> cut;
        std::map<std::u32string, First> inLowerCase;
    };

    static void Compare(FileChecker& checker, const std::string& path, const std::string& name,
                        const Firsts& firsts);

    Firsts m_ofFile;
    Firsts m_ofDatabase;
};

} // namespace rulebook
