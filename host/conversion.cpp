#include "host/conversion.h"

#include "amounts/engine_session.h"
#include "host/com_apartment.h"
#include "host/conversion_obstacle.h"
#include "host/order_path.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace host
{

namespace
{

bool IsThere(const std::string& path)
{
    return port::FileExists(path.c_str()) || port::FolderExists(path.c_str());
}

} // namespace

OrderSource ReadOrderSource(const OptionValues& values, const std::string& command)
{
    const OptionValue& file = OrderFileArgument(values, "signcheck " + command + " order.xml");
    OrderSource order;
    order.shown = file.text;
    order.path = ExistingFilePath(file, "the order file");
    order.format = ReadOrderFormat(values, order.path);
    order.holder = "signcheck " + command;
    return order;
}

Conversion::Conversion(std::string order, const std::string& holder)
    : m_order(std::move(order)), m_lock(m_order, holder)
{
}

// Delegates, so that the destructor runs whatever fails behind the conversion.
Conversion::Conversion(const OrderSource& order) : Conversion(order.path, order.holder)
{
    RequireToBeAlone();
    RefuseExisting(order);
    Run(order);
    m_isOurs = true;
    RefuseMissing(order);
    // A folder that cannot be written was refused by then.
    if (!m_lock.IsTaken())
    {
        Warn(m_lock.Failure());
    }
}

Conversion::~Conversion()
{
    if (!m_isOurs)
    {
        return;
    }
    try
    {
        Remove();
        for (const amounts::WorkFileKind& kind : amounts::kWorkFiles)
        {
            if (port::FileExists(Path(kind).c_str()))
            {
                Warn("work file " + QuotedPath(Path(kind)) +
                     " could not be removed. Remove it by hand; it holds the orders in plain "
                     "text.");
            }
        }
    }
    catch (const std::bad_alloc&)
    {
        // Without memory for a path the files stay, and there is none to tell so either.
    }
}

std::string Conversion::Path(const amounts::WorkFileKind& kind) const
{
    return amounts::WorkFilePath(m_order.c_str(), kind);
}

void Conversion::Remove()
{
    amounts::DeleteWorkFiles(m_order.c_str());
    // Whoever takes the order now finds none of our files, and touches none that we read on.
    if (!IsAnythingLeft())
    {
        m_lock.GiveBack();
    }
}

bool Conversion::IsAnythingLeft() const
{
    return std::any_of(std::begin(amounts::kWorkFiles), std::end(amounts::kWorkFiles),
                       [this](const amounts::WorkFileKind& kind)
                       { return port::FileExists(Path(kind).c_str()); });
}

void Conversion::RequireToBeAlone() const
{
    if (m_lock.IsHeldByOther())
    {
        throw Refusal(kCouldNotRun, "argument FILE: " + m_lock.Obstacle());
    }
}

void Conversion::RefuseExisting(const OrderSource& order) const
{
    std::string there;
    for (const amounts::WorkFileKind& kind : amounts::kWorkFiles)
    {
        if (const std::string path = Path(kind); IsThere(path))
        {
            there += (there.empty() ? "" : ", ") + QuotedPath(path);
        }
    }
    if (!there.empty())
    {
        throw Refusal(kCouldNotRun,
                      "argument FILE: work files of " + Quoted(order.shown) +
                          " are there already (" + there +
                          "): kept by signcheck convert --keep, left by a run that was cut short, "
                          "or in use by another one. They would be replaced. Remove them when "
                          "nobody needs them, or give a copy of the order file in another folder.");
    }
}

void Conversion::Run(const OrderSource& order) const
{
    const ComApartment apartment;
    amounts::EngineSession session(m_order.c_str(), order.format.format1.c_str(),
                                   order.format.format2.c_str());
    if (session.Convert())
    {
        return;
    }
    std::string reason = support::Utf8FromNarrow(session.ErrorText().SafeGetString());
    reason.erase(reason.find_last_not_of(' ') + 1U);
    const std::string obstacle = ConversionObstacle(m_order);
    throw Refusal(kCouldNotRun, "argument FILE: " + Quoted(order.shown) +
                                    " could not be converted as " + order.format.Name() +
                                    BecauseOf(reason + (obstacle.empty() ? "" : "; ") + obstacle));
}

void Conversion::RefuseMissing(const OrderSource& order) const
{
    for (const amounts::WorkFileKind& kind : amounts::kWorkFiles)
    {
        if (!port::FileExists(Path(kind).c_str()))
        {
            throw Refusal(kCouldNotRun, "argument FILE: the conversion of " + Quoted(order.shown) +
                                            " ended well but left no work file " +
                                            QuotedPath(Path(kind)) +
                                            ". Check that nothing else cleans up its folder, and "
                                            "which conversion engine is registered.");
        }
    }
}

} // namespace host
