#include "host/output.h"

#include "database/secrets.h"
#include "host/json_layout.h"
#include "host/palette.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace host
{

namespace
{

// Of the process: it answers one command.
JsonLayout settledLayout = JsonLayout::Readable;

void Write(std::FILE* stream, const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace

void Print(const std::string& text)
{
    Write(stdout, text);
}

void LayOutJson(JsonLayout layout)
{
    settledLayout = layout;
}

JsonLayout LayoutOfJson()
{
    return settledLayout;
}

void PrintJson(const nlohmann::ordered_json& object)
{
    const int indent = settledLayout == JsonLayout::OneLine ? -1 : 2;
    Print(object.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}

std::string WithoutPasswords(const std::string& message)
{
    return database::WithoutSecrets(message, {});
}

void Complain(const std::string& message)
{
    Write(stderr, ForErrors(Tone::Bad, "signcheck:") + " " + WithoutPasswords(message) + "\n");
}

void Warn(const std::string& message)
{
    Write(stderr, "signcheck: " + ForErrors(Tone::Doubtful, "WARNING:") + " " +
                      WithoutPasswords(message) + "\n");
}

bool FlushOutput()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

} // namespace host
