#pragma once

#include "amounts/tdelimitedfile.h"
#include "host/json_stream.h"

#include <string>

namespace host
{

/// What the conversion found wrong with an order file: opened while the work files are there, told
/// once, row by row.
class FileErrors
{
public:
    /// `order` is the path of the order file, with its work files beside it; Windows-1252.
    explicit FileErrors(const std::string& order);

    bool IsEmpty() const;

    /// Writes them as an array "errors" of `record`, `number` and `text`.
    void Write(JsonStream& json);
    /// Prints a paragraph for each.
    void Print();

private:
    TDelimitedFile m_file;
};

} // namespace host
