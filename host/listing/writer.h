#pragma once

#include "host/listing/record.h"
#include "host/output_format.h"

#include <memory>
#include <string>

namespace listing
{

/// Prints the rows of one listing in one output format, each as it comes, in memory that does not
/// grow with their number.
class Writer
{
public:
    Writer() = default;
    virtual ~Writer() = default;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    virtual void Add(const Record& record) = 0;

    /// Ends what was printed. `nextPage` is the command that shows the rows behind; empty when
    /// there are none.
    virtual void Finish(const std::string& nextPage) = 0;

    /// Ends it because the rows behind could not be read.
    virtual void Fail(const std::string& message, int status) = 0;

    /// Whether anything was printed, so that a failure has to be told within it.
    virtual bool HasBegun() const = 0;
};

/// `shape` must outlive the writer.
std::unique_ptr<Writer> MakeWriter(host::OutputFormat format, const Shape& shape);

} // namespace listing
