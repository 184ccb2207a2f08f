#pragma once

namespace host
{

/// How JSON objects are written.
enum class JsonLayout
{
    Readable, ///< indented
    OneLine,
};

/// Settles the layout for the whole run, as the output format asks for it. Readable before.
void LayOutJson(JsonLayout layout);
JsonLayout LayoutOfJson();

} // namespace host
