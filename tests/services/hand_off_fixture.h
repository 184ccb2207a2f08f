#pragma once

#include "services/cmoncom.h"
#include "services/tpipeexception.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace testing_support
{

/// Cuts what is longer than the field.
template <std::size_t Size>
void Fill(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), std::min(text.size(), Size));
}

/// A report to hand on and a store that is not there yet.
class HandOffFixture : public testing::Test
{
protected:
    HandOffFixture() { Announce("STATUS", "PARTNER1", folder.Write("report.psr", "the report")); }

    void Announce(const std::string& service, const std::string& partner, const std::string& path)
    {
        Fill(record.service, service);
        Fill(record.partner, partner);
        Fill(record.filePath, path);
        Fill(record.secondFilePath, path);
    }
    bool Add() { return client.AddFile(nullptr, store.c_str(), &record, id); }

    /// The text of the TPipeException that AddFile raises; it must raise one.
    std::string PipeText()
    {
        try
        {
            ADD_FAILURE() << "nothing raised, result " << Add();
        }
        catch (const TPipeException& raised)
        {
            return raised.GetMessageText();
        }
        return std::string();
    }

    /// Everything in the store below service and partner.
    std::vector<std::string> Filed() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(store))
        {
            if (entry.path().parent_path() != store && !entry.is_directory())
            {
                names.push_back(std::filesystem::relative(entry.path(), store).generic_string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void WriteCounter(const std::string& bytes) const
    {
        folder.Write("store/identifiers.counter", bytes);
    }

    TemporaryFolder folder;
    std::string store = folder.Path("store");
    tagADDFILE record = {};
    unsigned long id = 0;
    cmoncom client{1};
};

} // namespace testing_support
