#include "psr/status_report.h"

#include "support/cttime.h"
#include "support/trace.h"

namespace psr
{

namespace
{

/// The totals of the original order as texts; both empty when either is unknown.
struct OriginalTotals
{
    TSimpleString count;
    TSimpleString sum;
    bool known = false;
};

OriginalTotals TotalsOf(const StatusReport& report)
{
    OriginalTotals totals;
    totals.known = report.nbOfTxs != 0 && report.ctrlSum != -1.0;
    if (totals.known)
    {
        totals.count.GenerateString("%d", report.nbOfTxs);
        totals.sum.GenerateString("%.2f", report.ctrlSum);
    }
    return totals;
}

bool IsGiven(const char* text)
{
    return text != nullptr && *text != '\0';
}

void TraceReport(void* trace, const StatusReport& report, const OriginalTotals& totals)
{
    // Labels fill 34 characters, so that the values stand in one column.
    TraceValue(trace, "InitiatingParty                   ", report.initiatingParty, 1);
    TraceValue(trace, "OriginalMessageIdentification     ", report.orgnlMsgId, 1);
    TraceValue(trace, "OriginalMessageNameIdentification ", report.orgnlMsgNmId, 1);
    TraceValue(trace, "MessageIdentification             ", report.msgId, 1);
    TraceValue(trace, "OriginalNumberOfTransactions      ", totals.count.SafeGetString(), 1);
    TraceValue(trace, "OriginalControlSum                ", totals.sum.SafeGetString(), 1);
    TraceValue(trace, "Reject code                       ", report.reasonCode, 1);
    TraceValue(trace, "Reject information                ", report.reasonInfo, 1);
}

/// A line with one value in it; null is empty.
void AppendLine(TSimpleString& document, const char* before, const char* value, const char* after)
{
    document += before;
    document += value;
    document += after;
    document += "\n";
}

void AppendHeader(TSimpleString& document, const StatusReport& report, const char* creationTime)
{
    document += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.002.001.02\""
                " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n"
                " <pain.002.001.02>\n"
                "  <GrpHdr>\n";
    AppendLine(document, "   <MsgId>", report.msgId, "</MsgId>");
    AppendLine(document, "   <CreDtTm>", creationTime, "</CreDtTm>");
    AppendLine(document, "   <InitgPty><Id><OrgId><BkPtyId>", report.initiatingParty,
               "</BkPtyId></OrgId></Id></InitgPty>");
    document += "  </GrpHdr>\n";
}

void AppendReasons(TSimpleString& document, const StatusReport& report)
{
    // The block stands even when it is empty: a rejection without known reasons.
    document += "   <StsRsnInf>\n";
    if (IsGiven(report.reasonCode))
    {
        document += "      <StsRsn>\n";
        AppendLine(document, "         <Cd>", report.reasonCode, "</Cd>");
        document += "      </StsRsn>\n";
    }
    if (IsGiven(report.reasonInfo))
    {
        AppendLine(document, "      <AddtlStsRsnInf>", report.reasonInfo, "</AddtlStsRsnInf>");
    }
    document += "   </StsRsnInf>\n";
}

void AppendOriginal(TSimpleString& document, const StatusReport& report,
                    const OriginalTotals& totals)
{
    document += "  <OrgnlGrpInfAndSts>\n";
    AppendLine(document, "   <OrgnlMsgId>", report.orgnlMsgId, "</OrgnlMsgId>");
    AppendLine(document, "   <OrgnlMsgNmId>", report.orgnlMsgNmId, "</OrgnlMsgNmId>");
    if (totals.known)
    {
        // Four blanks here, three around: receivers compare reports byte for byte.
        AppendLine(document, "    <OrgnlNbOfTxs>", totals.count.SafeGetString(), "</OrgnlNbOfTxs>");
        AppendLine(document, "    <OrgnlCtrlSum>", totals.sum.SafeGetString(), "</OrgnlCtrlSum>");
    }
    AppendLine(document, "   <GrpSts>", report.received ? "RCVD" : "RJCT", "</GrpSts>");
    if (!report.received)
    {
        AppendReasons(document, report);
    }
    document += "  </OrgnlGrpInfAndSts>\n";
}

} // namespace

void WriteStatusReport(void* trace, const StatusReport& report, TSimpleString& document)
{
    char timestamp[256] = {};
    CTTime::GetTickCount().GetExtendedISOTimestamp(timestamp, sizeof(timestamp));
    WriteStatusReport(trace, report, timestamp, document);
}

void WriteStatusReport(void* trace, const StatusReport& report, const char* creationTime,
                       TSimpleString& document)
{
    TimeTraceDump(trace, "GENERATE PSR", 0, 0);
    const OriginalTotals totals = TotalsOf(report);
    TraceReport(trace, report, totals);

    // Built aside: the report's texts may lie in the document that it replaces.
    TSimpleString fresh;
    AppendHeader(fresh, report, creationTime);
    AppendOriginal(fresh, report, totals);
    fresh += " </pain.002.001.02>\n"
             "</Document>";
    document = static_cast<TSimpleString&&>(fresh);
}

} // namespace psr
