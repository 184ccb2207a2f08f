#include "tests/model/show.h"

#include "tests/model/plain_texts.h"
#include "tests/model/real_bank.h"

#include <ostream>

namespace model
{

namespace
{

/// A text in quotes, what is no plain letter by its number.
std::string Quoted(const Text& text)
{
    std::string quoted = "\"";
    for (const wchar_t character : text)
    {
        const bool plain = character >= 0x20 && character != 0x7F && character != L'"';
        quoted += plain ? Utf8Of(Text(1, character))
                        : "\\x" + std::to_string(static_cast<int>(character)) + ".";
    }
    return quoted + "\"";
}

void ShowSettings(const Session& session, std::ostream& stream)
{
    stream << "session: " << (session.connected ? "" : "not connected, ")
           << (session.veu ? "SetModeVeu, " : "") << (session.traced ? "traced, " : "")
           << "log file " << Quoted(session.logFile) << '\n'
           << "  SetContractInfo(" << session.contractType << ", " << session.protocol << ", "
           << Quoted(session.partner) << ", " << Quoted(session.service) << ", "
           << Quoted(session.client) << ", " << session.serverMode << ", \"\")\n"
           << (session.amountsFromFile ? "  SetFormatInfo(\"NONE\", \"none\", \"\") behind\n" : "")
           << "  SetAmountInfo(" << session.total << ", " << session.largest << ", "
           << Quoted(session.currency) << ")\n"
           << "  SetMessageInfo(" << Quoted(session.initiatingParty) << ", "
           << Quoted(session.orderId) << ", " << Quoted(session.messageName) << ", "
           << Quoted(session.messageId) << ")\n"
           << "  SetPSRWarning(" << Quoted(session.psrService) << ")  SetIdFileVfs("
           << session.idFileVfs << ")  SetRefRequest(" << Quoted(session.refRequest) << ")\n";
}

void ShowAmounts(const GivenAmounts& amounts, std::ostream& stream)
{
    stream << amounts.total << ", " << amounts.largest << ", " << Quoted(amounts.currency);
}

void ShowCall(const Call& call, std::ostream& stream)
{
    if (call.amounts && !call.rulesAlone)
    {
        stream << "  SetAmountInfo(";
        ShowAmounts(*call.amounts, stream);
        stream << ")\n";
    }
    stream << (call.distributedFromNow ? "  SetModeVeu()\n" : "");
    stream << "  " << (call.onCopy ? "on a copy: " : "")
           << (call.rulesAlone ? "CheckSignRulesFor" : "CheckSignRules") << "("
           << Quoted(call.fileName) << ", " << Quoted(call.signers) << ")";
    if (call.rulesAlone)
    {
        if (call.amounts)
        {
            stream << ", on ";
            ShowAmounts(*call.amounts, stream);
        }
        stream << ", outputs before: " << Quoted(call.reasonCodeBefore) << ", "
               << Quoted(call.reasonTextBefore);
    }
    stream << '\n';
}

} // namespace

void showValue(const World& world, std::ostream& stream)
{
    const auto precision = stream.precision(17);
    stream << '\n';
    for (const std::wstring& statement : RealBank::Statements(world.tables))
    {
        stream << Utf8Of(statement) << ";\n";
    }
    stream << (world.journalMissing ? "table EVT_JOURNAL is away meanwhile\n" : "");
    for (const Session& session : world.sessions)
    {
        ShowSettings(session, stream);
        for (const Call& call : session.calls)
        {
            ShowCall(call, stream);
        }
    }
    stream.precision(precision);
}

} // namespace model
