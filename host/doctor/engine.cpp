#include "host/doctor/file_checks.h"

#include "amounts/engine_interfaces.h"
#include "host/com_apartment.h"
#include "host/conversion.h"
#include "host/conversion_obstacle.h"
#include "host/file_amounts.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/class_advice.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/temporary_file.h"

namespace doctor
{

namespace
{

constexpr const char* kEngineCheck = "engine";
constexpr const char* kTotal = "1234.56";
constexpr const char* kLargest = "1000.01";

// Two transfers of nobody to nobody.
constexpr std::string_view kOrder =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.001.001.03\"><CstmrCdtTrfInitn>"
    "<GrpHdr><MsgId>DOCTOR</MsgId><CreDtTm>2026-01-01T00:00:00</CreDtTm><NbOfTxs>2</NbOfTxs>"
    "<CtrlSum>1234.56</CtrlSum><InitgPty><Nm>NOBODY</Nm></InitgPty></GrpHdr>"
    "<PmtInf><PmtInfId>DOCTOR</PmtInfId><PmtMtd>TRF</PmtMtd><ReqdExctnDt>2026-01-01</ReqdExctnDt>"
    "<Dbtr><Nm>NOBODY</Nm></Dbtr><DbtrAcct><Id><Othr><Id>0</Id></Othr></Id></DbtrAcct>"
    "<DbtrAgt><FinInstnId/></DbtrAgt>"
    "<CdtTrfTxInf><PmtId><EndToEndId>1</EndToEndId></PmtId>"
    "<Amt><InstdAmt Ccy=\"EUR\">1000.01</InstdAmt></Amt><Cdtr><Nm>NOBODY</Nm></Cdtr></CdtTrfTxInf>"
    "<CdtTrfTxInf><PmtId><EndToEndId>2</EndToEndId></PmtId>"
    "<Amt><InstdAmt Ccy=\"EUR\">234.55</InstdAmt></Amt><Cdtr><Nm>NOBODY</Nm></Cdtr></CdtTrfTxInf>"
    "</PmtInf></CstmrCdtTrfInitn></Document>\n";

/// A folder of its own with the order file in it, gone at the end.
class OrderOfItsOwn
{
public:
    OrderOfItsOwn()
        : m_folder(support::TemporaryPath(nullptr, "doctor")),
          m_order(port::JoinPath(m_folder, "order.xml"))
    {
        // What is missing above it would be made as well.
        if (!port::FolderExists(port::TemporaryFolder().c_str()) ||
            !port::CreatePrivateFolder(m_folder.c_str()) || !support::WriteNewFile(m_order, kOrder))
        {
            Remove();
            throw host::Refusal(host::kCouldNotRun,
                                "no order file can be written in the folder for temporary files " +
                                    host::Quoted(support::Utf8FromNarrow(port::TemporaryFolder())) +
                                    ". Give another one (TMPDIR, on Windows TEMP).");
        }
    }
    ~OrderOfItsOwn() { Remove(); }
    OrderOfItsOwn(const OrderOfItsOwn&) = delete;
    OrderOfItsOwn& operator=(const OrderOfItsOwn&) = delete;

    const std::string& Path() const noexcept { return m_order; }

private:
    void Remove() const
    {
        DeleteFileA(m_order.c_str());
        static_cast<void>(port::RemoveEmptyFolder(m_folder.c_str()));
    }

    std::string m_folder;
    std::string m_order;
};

std::string ModuleInWords()
{
    const std::string module = port::ModuleNamedForClass(amounts::kRunClass);
    return module.empty() ? "an engine of this process"
                          : host::Quoted(support::Utf8FromNarrow(module));
}

host::FileAmounts AmountsOf(const OrderOfItsOwn& order)
{
    const host::Conversion conversion(
        {order.Path(), support::Utf8FromNarrow(order.Path()), {"ISO20022", "pain.001"}});
    return host::ReadFileAmounts(order.Path());
}

} // namespace

Findings CheckEngine()
{
    const host::ComApartment apartment;
    const OrderOfItsOwn order;
    if (const std::string obstacle = host::ConversionObstacle(order.Path()); !obstacle.empty())
    {
        const std::size_t end = obstacle.find(". ");
        return {{kEngineCheck, Outcome::Failed, obstacle.substr(0, end),
                 end == std::string::npos ? "" : obstacle.substr(end + 2) + "."}};
    }
    const host::FileAmounts amounts = AmountsOf(order);
    if (amounts.total != kTotal || amounts.largest != kLargest || amounts.orders != 2)
    {
        return {{kEngineCheck, Outcome::Failed,
                 ModuleInWords() + " made " + amounts.total + " of two transfers of " + kTotal +
                     " together",
                 "Install library, engine and signcheck of one version."}};
    }
    return {{kEngineCheck, Outcome::Ok,
             ModuleInWords() + " converted an order file to the last cent", ""}};
}

} // namespace doctor
