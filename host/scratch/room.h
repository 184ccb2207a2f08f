#pragma once

#include "database/dialect.h"

#include <string>

namespace scratch
{

/// How a product makes room for a copy within itself. Names stand behind `create` and `drop`.
struct Room
{
    database::Product product;
    const char* kind;
    const wchar_t* create;
    const wchar_t* drop;
    const wchar_t* dropEnd;
    const char* list; ///< the query that names every room in its column NAME
};

/// Null for a product within which no copies are made.
const Room* RoomOf(database::Product product);

/// The statement that drops a room.
std::wstring DropOf(const Room& room, const std::string& name);

/// The connection string that leads into a room.
std::string Into(const Room& room, const std::string& connexionString, const std::string& name);

} // namespace scratch
