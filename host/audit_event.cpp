#include "host/audit_event.h"

namespace host
{

namespace
{

constexpr const char* kHead = "[SIGN_RULES]";
constexpr const char* kEndOfHeader = "\r\n\r\n";

struct HeaderLine
{
    const char* label;
    std::string AuditEvent::*part;
};

const HeaderLine kHeaderLines[] = {
    {"Mode:", &AuditEvent::mode},       {"Protocol:", &AuditEvent::protocol},
    {"Entité:", &AuditEvent::partner},  {"Client:", &AuditEvent::client},
    {"Service:", &AuditEvent::service}, {"IdFichier=", &AuditEvent::fileId},
    {"OrderId=", &AuditEvent::orderId},
};

std::string RightTrimmed(std::string text)
{
    text.erase(text.find_last_not_of(" \r\n") + 1);
    return text;
}

void TakeHeaderLine(const std::string& line, AuditEvent& event)
{
    for (const HeaderLine& known : kHeaderLines)
    {
        const std::string label = known.label;
        if (line.rfind(label, 0) == 0)
        {
            event.*known.part = RightTrimmed(line.substr(label.size()));
            return;
        }
    }
}

} // namespace

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t begin = 0;
    while (begin < text.size())
    {
        std::size_t end = text.find('\n', begin);
        end = end == std::string::npos ? text.size() : end;
        std::string line = RightTrimmed(text.substr(begin, end - begin));
        if (!line.empty())
        {
            lines.push_back(std::move(line));
        }
        begin = end + 1;
    }
    return lines;
}

AuditEvent ReadAuditText(const std::string& text)
{
    AuditEvent event;
    const std::size_t end = text.find(kEndOfHeader);
    if (text.rfind(kHead, 0) != 0 || end == std::string::npos)
    {
        event.message = text;
        return event;
    }
    for (const std::string& line : LinesOf(text.substr(0, end)))
    {
        TakeHeaderLine(line, event);
    }
    event.message = text.substr(end + std::string(kEndOfHeader).size());
    return event;
}

} // namespace host
