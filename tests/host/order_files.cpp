#include "tests/host/order_files.h"

#include <algorithm>
#include <filesystem>

namespace testing_support
{

OrderFilesTest::OrderFilesTest()
    : m_config("SIGNUTILS_CONFIG", SIGNUTILS_SOURCES "/amounts"),
      m_registry("SIGNUTILS_COM_REGISTRY", nullptr)
{
}

std::string OrderFilesTest::Corpus(const std::string& name) const
{
    std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / name, m_folder.Path(name));
    return m_folder.Path(name);
}

std::string OrderFilesTest::Transfers(const std::vector<std::string>& groups) const
{
    std::string message = "<Document><CstmrCdtTrfInitn><GrpHdr><MsgId>MSG-1</MsgId></GrpHdr>\n";
    for (const std::string& group : groups)
    {
        message += "<PmtInf>" + group + "</PmtInf>\n";
    }
    return m_folder.Write("order.xml", message + "</CstmrCdtTrfInitn></Document>\n");
}

std::string OrderFilesTest::Group(const std::string& reference,
                                  const std::vector<std::string>& amounts)
{
    std::string group = "<PmtInfId>" + reference +
                        "</PmtInfId><ReqdExctnDt>2026-11-25"
                        "</ReqdExctnDt><Dbtr><Nm>Ateliers Durand</Nm></Dbtr><DbtrAcct><Id><IBAN>"
                        "FR1420041010050500013M02606</IBAN></Id></DbtrAcct><DbtrAgt><FinInstnId>"
                        "<BIC>BNPAFRPP</BIC></FinInstnId></DbtrAgt>\n";
    for (const std::string& amount : amounts)
    {
        group +=
            "<CdtTrfTxInf><PmtId><EndToEndId>REF-" + amount.substr(4) +
            "</EndToEndId></PmtId><Amt><InstdAmt Ccy=\"" + amount.substr(0, 3) + "\">" +
            amount.substr(4) +
            "</InstdAmt></Amt><CdtrAgt><FinInstnId><BIC>AGRIFRPP</BIC></FinInstnId></CdtrAgt>"
            "<Cdtr><Nm>Maison Lefèvre</Nm></Cdtr><CdtrAcct><Id><IBAN>DE02120300000000202051"
            "</IBAN></Id></CdtrAcct><RmtInf><Ustrd>Facture 12</Ustrd></RmtInf></CdtTrfTxInf>\n";
    }
    return group;
}

std::vector<std::string> OrderFilesTest::Names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
    {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string PrintedValue(const std::string& json, const std::string& key)
{
    const std::string mark = "\"" + key + "\": ";
    const std::size_t begin = json.find(mark);
    if (begin == std::string::npos)
    {
        ADD_FAILURE() << key << " is not in " << json;
        return {};
    }
    const std::size_t start = begin + mark.size();
    std::string value = json.substr(start, json.find('\n', start) - start);
    value.erase(value.find_last_not_of(',') + 1U);
    return value;
}

} // namespace testing_support
