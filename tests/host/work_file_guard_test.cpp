#include "host/work_file_guard.h"

#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>

using engine_tests::Names;
using host::WorkFileGuard;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

class WorkFiles : public testing::Test
{
protected:
    void Convert() const
    {
        for (const char* const ending :
             {".veu", ".veu.bp", ".veu.cp", ".veu.cp2", ".veu.tot", ".veu.err"})
        {
            m_folder.Write(std::string("order.xml") + ending, "rows");
        }
    }

    testing_support::TemporaryFolder m_folder;
    std::string m_order = m_folder.Write("order.xml", "<Document/>");
};

} // namespace

TEST_F(WorkFiles, OfACheckThatWasCutShortAreDeleted)
{
    try
    {
        const WorkFileGuard guard(m_order);
        Convert();
        throw std::bad_alloc();
    }
    catch (const std::bad_alloc&)
    {
        EXPECT_THAT(Names(m_folder.Path()), ElementsAre("order.xml"));
    }
}

TEST_F(WorkFiles, ThatWereThereBeforeStay)
{
    m_folder.Write("order.xml.veu.bp", "kept");
    {
        const WorkFileGuard guard(m_order);
        m_folder.Write("order.xml.veu.cp", "rows");
    }
    EXPECT_THAT(Names(m_folder.Path()), ElementsAre("order.xml", "order.xml.veu.bp"));
}

TEST_F(WorkFiles, ThatWereThereBeforeAreTold)
{
    m_folder.Write("order.xml.veu.bp", "kept");
    const WorkFileGuard guard(m_order);

    EXPECT_THAT(guard.Warning(),
                AllOf(HasSubstr("'" + m_order + ".veu.bp'"), HasSubstr("replaces and deletes them"),
                      Not(HasSubstr(".veu.cp'"))));
}

TEST_F(WorkFiles, ThatWereNotThereAreNotToldOf)
{
    EXPECT_EQ(WorkFileGuard(m_order).Warning(), "");
}
