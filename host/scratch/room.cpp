#include "host/scratch/room.h"

#include "database/connection_string.h"
#include "support/codepage.h"

namespace scratch
{

namespace
{

using database::Product;

constexpr Room kRooms[] = {
    {Product::PostgreSql, "PostgreSQL schema", L"CREATE SCHEMA ", L"DROP SCHEMA ", L" CASCADE",
     "SELECT CAST(nspname AS VARCHAR(64)) AS NAME FROM pg_catalog.pg_namespace"},
    {Product::MariaDb, "MariaDB database", L"CREATE DATABASE ", L"DROP DATABASE ", L"",
     "SELECT SCHEMA_NAME AS NAME FROM information_schema.SCHEMATA"},
};

} // namespace

const Room* RoomOf(Product product)
{
    for (const Room& each : kRooms)
    {
        if (each.product == product)
        {
            return &each;
        }
    }
    return nullptr;
}

std::wstring DropOf(const Room& room, const std::string& name)
{
    return room.drop + support::WideFromNarrow(name) + room.dropEnd;
}

std::string Into(const Room& room, const std::string& connexionString, const std::string& name)
{
    const database::ConnectionString parts(connexionString);
    if (room.product == Product::MariaDb)
    {
        return parts.With("DATABASE", name);
    }
    // The driver sends these statements behind every connect.
    std::string settings = parts.Value("CONNSETTINGS");
    settings += (settings.empty() ? "" : ";") + ("SET search_path TO " + name);
    return parts.With("CONNSETTINGS", settings);
}

} // namespace scratch
