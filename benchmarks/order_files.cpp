#include "benchmarks/order_files.h"

#include "support/format.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace benchmarks
{

namespace
{

constexpr std::uint64_t kOrdersPerGroup = 1000;

// Spread over 0.01 to 50000.00, the same in every run.
std::uint64_t Cents(std::uint64_t order)
{
    return 1U + (order * 7919U) % 5'000'000U;
}

std::uint64_t SumOfCents(std::uint64_t first, std::uint64_t end)
{
    std::uint64_t sum = 0;
    for (std::uint64_t order = first; order < end; ++order)
    {
        sum += Cents(order);
    }
    return sum;
}

std::string Amount(std::uint64_t cents)
{
    return support::FormatA("%I64u.%02u", static_cast<unsigned long long>(cents / 100U),
                            static_cast<unsigned>(cents % 100U));
}

void WriteGroupHead(std::ostream& file, std::uint64_t first, std::uint64_t end)
{
    file << "<PmtInf><PmtInfId>LOT-" << first / kOrdersPerGroup + 1U
         << "</PmtInfId><PmtMtd>TRF</PmtMtd><NbOfTxs>" << end - first << "</NbOfTxs><CtrlSum>"
         << Amount(SumOfCents(first, end))
         << "</CtrlSum><PmtTpInf><SvcLvl><Cd>SEPA</Cd></SvcLvl></PmtTpInf>"
            "<ReqdExctnDt>2026-03-31</ReqdExctnDt><Dbtr><Nm>Iberexpo S.A.</Nm></Dbtr>"
            "<DbtrAcct><Id><IBAN>ES9121000418450200051332</IBAN></Id></DbtrAcct>"
            "<DbtrAgt><FinInstnId><BIC>CAIXESBBXXX</BIC></FinInstnId></DbtrAgt>\n";
}

void WriteTransaction(std::ostream& file, std::uint64_t order)
{
    // Every fourth name has letters that take two bytes here and one in the work files.
    const char* const name = order % 4U == 0 ? "José Núñez Ibáñez" : "Maria Lopez Garcia";
    file << "<CdtTrfTxInf><PmtId><InstrId>I" << order << "</InstrId><EndToEndId>NOM-2026-03-"
         << order << "</EndToEndId></PmtId><Amt><InstdAmt Ccy=\"EUR\">" << Amount(Cents(order))
         << "</InstdAmt></Amt><CdtrAgt><FinInstnId><BIC>BNPAFRPPXXX</BIC></FinInstnId></CdtrAgt>"
            "<Cdtr><Nm>"
         << name
         << "</Nm></Cdtr><CdtrAcct><Id><IBAN>FR7630006000011234567890189</IBAN></Id></CdtrAcct>"
            "<RmtInf><Ustrd>Nomina marzo 2026, empleado "
         << order << "</Ustrd></RmtInf></CdtTrfTxInf>\n";
}

} // namespace

OrderFileFacts WritePain001(const std::string& path, std::uint64_t orders)
{
    OrderFileFacts facts{path, orders, 0, SumOfCents(0, orders), 0};
    std::ofstream file(path, std::ios::binary);
    file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.001.001.03\">"
            "<CstmrCdtTrfInitn><GrpHdr><MsgId>BENCH-1</MsgId>"
            "<CreDtTm>2026-03-29T10:00:00</CreDtTm><NbOfTxs>"
         << orders << "</NbOfTxs><CtrlSum>" << Amount(facts.totalCents)
         << "</CtrlSum><InitgPty><Nm>Iberexpo S.A.</Nm></InitgPty></GrpHdr>\n";
    for (std::uint64_t first = 0; first < orders; first += kOrdersPerGroup)
    {
        const std::uint64_t end = std::min(first + kOrdersPerGroup, orders);
        WriteGroupHead(file, first, end);
        for (std::uint64_t order = first; order < end; ++order)
        {
            facts.largestCents = std::max(facts.largestCents, Cents(order));
            WriteTransaction(file, order);
        }
        file << "</PmtInf>\n";
    }
    file << "</CstmrCdtTrfInitn></Document>\n";
    file.close();
    if (!file)
    {
        throw std::runtime_error("cannot write " + path);
    }
    facts.bytes = std::filesystem::file_size(path);
    return facts;
}

} // namespace benchmarks
