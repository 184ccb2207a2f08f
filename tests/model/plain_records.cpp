#include "tests/model/plain_records.h"

#include "support/protocol_catalogue.h"
#include "tests/model/plain_messages.h"
#include "tests/model/plain_texts.h"

#include <cmath>
#include <cstdlib>

namespace model
{

namespace
{

constexpr std::size_t kKeyLength = 8;
constexpr std::size_t kOrderIdLength = 10;
constexpr std::size_t kNameLength = 255;
constexpr std::size_t kMotifLength = 1024;
constexpr std::size_t kSignersLength = 2048;
constexpr std::size_t kFileNameLength = 256;

/// Puts texts into literals; remembers whether one would have ended its own.
class Literals
{
public:
    Text Of(const Text& text, std::size_t length)
    {
        const NullableText value = LiteralValue(Cut(text, length));
        m_whole = m_whole && value.has_value();
        return value.value_or(Text());
    }
    bool Whole() const { return m_whole; }

private:
    bool m_whole = true;
};

Text NamesOf(const Signer& signer, Literals& literals)
{
    return literals.Of(Doubled(signer.firstName), kNameLength) + L" " +
           literals.Of(Doubled(signer.lastName), kNameLength);
}

Text MotifOf(const Decision& decision)
{
    return Doubled(decision.reasonText) + L" : " + Doubled(decision.message);
}

/// False when the statement is refused: no database knows "inf" or "nan" either.
bool FillCommon(HistoryRow& row, Literals& literals, const Session& session, const Case& given,
                const Call& call, std::uint32_t verdict)
{
    row.server = session.serverMode != 0 ? 1 : 0;
    row.statut = std::to_wstring(verdict);
    row.partner = literals.Of(session.partner, kKeyLength);
    row.protocol = static_cast<std::uint32_t>(session.protocol);
    row.service = literals.Of(session.service, kKeyLength);
    row.client = literals.Of(session.client, kKeyLength);
    row.idFileVfs = static_cast<std::uint32_t>(session.idFileVfs);
    row.orderId = literals.Of(session.orderId, kOrderIdLength);
    row.cns = literals.Of(call.signers, kSignersLength);
    row.total = std::strtod(SixPlaces(given.total).c_str(), nullptr);
    row.largest = std::strtod(SixPlaces(given.largest).c_str(), nullptr);
    row.fileName = literals.Of(call.fileName, kFileNameLength);
    return literals.Whole() && std::isfinite(given.total) && std::isfinite(given.largest);
}

Text Padded(const Text& text, std::size_t width)
{
    Text padded = Cut(text, width);
    padded.resize(width, L' ');
    return padded;
}

Text ProtocolName(const Session& session)
{
    return WideOf(TProtocolCatalogue()
                      .GetProtocolLongName(static_cast<unsigned long>(session.protocol))
                      .SafeGetString());
}

} // namespace

Rows RowsOf(const Session& session, const Case& given, const Call& call,
            const std::vector<Decision>& decisions, std::uint32_t verdict)
{
    struct Line
    {
        std::int32_t controlType;
        Signer one;
        Signer two;
        Text motif;
    };
    std::vector<Line> lines;
    for (const Decision& decision : decisions)
    {
        lines.push_back(
            {decision.controlType, decision.signer1, decision.signer2, MotifOf(decision)});
    }
    if (decisions.empty())
    {
        lines.push_back({0, {}, {}, Doubled(Message(1805, {given.signerList}))});
    }

    Rows rows;
    rows.due = static_cast<std::uint32_t>(lines.size());
    for (const Line& line : lines)
    {
        HistoryRow row;
        Literals literals;
        row.controlType = line.controlType;
        row.signer1 = NamesOf(line.one, literals);
        row.signer2 = NamesOf(line.two, literals);
        row.motif = literals.Of(line.motif, kMotifLength);
        if (!FillCommon(row, literals, session, given, call, verdict))
        {
            break;
        }
        rows.written.push_back(row);
    }
    return rows;
}

Event EventOf(const Session& session, int level, const Text& message)
{
    Event event;
    event.level = level;
    if (!session.refRequest.empty())
    {
        event.reference = session.refRequest;
    }
    const auto fileNumber =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(session.idFileVfs));
    event.text =
        L"[SIGN_RULES]\r\nMode:" + Message(session.serverMode != 0 ? 355 : 356) + L"\r\nProtocol:" +
        ProtocolName(session) + L"\r\nEntit\u00E9:" + Padded(session.partner, kKeyLength) +
        L"\r\nClient:" + Padded(session.client, kKeyLength) + L"\r\nService:" +
        Padded(session.service, kKeyLength) + L"\r\nIdFichier=" + std::to_wstring(fileNumber) +
        L"\r\nOrderId=" + Padded(session.orderId, kOrderIdLength) + L"\r\n\r\n" + message;
    if (!session.logFile.empty())
    {
        event.attachKind = L"LOG";
        event.attachPath = session.logFile;
    }
    return event;
}

std::string ReportOf(const Session& session, const Text& reasonCode, const Text& reasonText)
{
    Text report = L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  L"<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.002.001.02\" "
                  L"xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
                  L" <pain.002.001.02>\n"
                  L"  <GrpHdr>\n"
                  L"   <MsgId>" +
                  session.messageId +
                  L"</MsgId>\n"
                  L"   <CreDtTm>" +
                  WideOf(kTimeOfReport) +
                  L"</CreDtTm>\n"
                  L"   <InitgPty><Id><OrgId><BkPtyId>" +
                  session.initiatingParty +
                  L"</BkPtyId></OrgId></Id></InitgPty>\n"
                  L"  </GrpHdr>\n"
                  L"  <OrgnlGrpInfAndSts>\n"
                  L"   <OrgnlMsgId>" +
                  session.orderId +
                  L"</OrgnlMsgId>\n"
                  L"   <OrgnlMsgNmId>" +
                  session.messageName +
                  L"</OrgnlMsgNmId>\n"
                  L"   <GrpSts>RJCT</GrpSts>\n"
                  L"   <StsRsnInf>\n";
    if (!reasonCode.empty())
    {
        report += L"      <StsRsn>\n         <Cd>" + reasonCode + L"</Cd>\n      </StsRsn>\n";
    }
    if (!reasonText.empty())
    {
        report += L"      <AddtlStsRsnInf>" + ThroughCodePage(reasonText) + L"</AddtlStsRsnInf>\n";
    }
    report += L"   </StsRsnInf>\n  </OrgnlGrpInfAndSts>\n </pain.002.001.02>\n</Document>";
    return Utf8Of(report);
}

} // namespace model
