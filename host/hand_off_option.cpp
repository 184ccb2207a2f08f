#include "host/hand_off_option.h"

#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "support/folders.h"

namespace host
{

std::string HandOffStoreFrom(const OptionValues& values)
{
    const OptionValue* folder = values.Find("hand-off");
    if (folder == nullptr)
    {
        return support::HandOffFolder();
    }
    if (folder->text.empty())
    {
        throw UsageRefusal(folder->origin +
                           ": the value is empty. Name the folder of the hand-off store.");
    }
    const std::string store = NarrowText(*folder);
    if (!port::FolderExists(store.c_str()))
    {
        throw Refusal(kCouldNotRun, folder->origin + ": there is no folder " +
                                        Quoted(folder->text) +
                                        ". Name the folder of the hand-off store.");
    }
    return store;
}

} // namespace host
