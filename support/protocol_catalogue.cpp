#include "support/protocol_catalogue.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <mutex>
#include <string>

namespace
{

struct Protocol
{
    std::uint32_t number;
    const char* longName;
};

// The numbers are this system's own and are stored in databases: they are never given anew.
constexpr Protocol kProtocols[] = {
    {1, "ETEBAC 3"},
    {2, "ETEBAC 5"},
    {3, "PeSIT"},
    {4, "SWIFTNet FileAct"},
    {5, "SWIFTNet InterAct"},
    {6, "SWIFT FIN"},
    {7, "EBICS 2.3"},
    {8, "EBICS 2.4 (EBICS T and TS)"},
    {9, "EBICS 2.5 (EBICS T and TS)"},
    {10, "EBICS 3.0"},
    {11, "FinTS (HBCI)"},
    {12, "FTP"},
    {13, "FTPS (FTP over TLS)"},
    {14, "SFTP (SSH File Transfer Protocol)"},
    {15, "HTTPS"},
    {16, "OFTP (ODETTE File Transfer Protocol)"},
    {17, "OFTP2 (ODETTE File Transfer Protocol 2)"},
    {18, "AS2 (Applicability Statement 2)"},
    {19, "AS4 (Applicability Statement 4)"},
    {20, "Message queue"},
    {21, "X.400"},
    {22, "Electronic mail"},
};

/// The names known to the process, the host's in the place of the catalogue's own.
struct Catalogue
{
    Catalogue()
    {
        for (const Protocol& protocol : kProtocols)
        {
            names[protocol.number] = protocol.longName;
        }
    }

    std::mutex mutex;
    std::map<std::uint32_t, std::string> names;
};

Catalogue& Shared()
{
    static Catalogue catalogue;
    return catalogue;
}

/// Protocol numbers are 32-bit, whatever the platform's long.
std::uint32_t NumberOf(unsigned long protocol) noexcept
{
    return static_cast<std::uint32_t>(protocol);
}

const char* OwnName(std::uint32_t number) noexcept
{
    for (const Protocol& protocol : kProtocols)
    {
        if (protocol.number == number)
        {
            return protocol.longName;
        }
    }
    return nullptr;
}

} // namespace

TSimpleString TProtocolCatalogue::GetProtocolLongName(unsigned long protocol) const
{
    Catalogue& catalogue = Shared();
    const std::lock_guard lock(catalogue.mutex);
    const auto found = catalogue.names.find(NumberOf(protocol));
    return found == catalogue.names.end() ? TSimpleString() : TSimpleString(found->second.c_str());
}

void TProtocolCatalogue::Register(unsigned long protocol, const char* longName)
{
    const std::uint32_t number = NumberOf(protocol);
    const char* const name = longName == nullptr || *longName == '\0' ? OwnName(number) : longName;
    Catalogue& catalogue = Shared();
    const std::lock_guard lock(catalogue.mutex);
    if (name == nullptr)
    {
        catalogue.names.erase(number);
        return;
    }
    catalogue.names[number] = name;
}

bool TProtocolCatalogue::GetAt(int index, unsigned long& protocol, TSimpleString& longName)
{
    Catalogue& catalogue = Shared();
    const std::lock_guard lock(catalogue.mutex);
    if (index < 0 || static_cast<std::size_t>(index) >= catalogue.names.size())
    {
        return false;
    }
    const auto& [number, name] = *std::next(catalogue.names.begin(), index);
    longName = name.c_str();
    protocol = number;
    return true;
}
