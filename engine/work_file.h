#pragma once

#include "port/files.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace engine
{

/// How the first lines of a work file are laid out.
enum class HeaderKind
{
    FourLines, ///< names, widths, quoted labels, ruler
    OneLine,   ///< names
    None,
};

/// One work file, written beside its final name and moved there when whole. For its owner only,
/// never through a link. Every failure raises engine::Failure.
class WorkFile
{
public:
    /// `finalPath` is Windows-1252.
    WorkFile(std::string finalPath, HeaderKind kind,
             std::initializer_list<std::string_view> columns);
    ~WorkFile();
    WorkFile(const WorkFile&) = delete;
    WorkFile& operator=(const WorkFile&) = delete;

    /// Appends one row; each field is put in quotes, with what would break the row replaced.
    void Row(std::initializer_list<std::string_view> fields);
    /// Appends a line as it stands.
    void Line(std::string_view text);

    /// Writes what is buffered and closes; the file still has its temporary name.
    void Complete();
    /// Gives the file its final name, replacing a leftover.
    void Publish();
    /// Takes a published file away again.
    void Withdraw() noexcept;

private:
    void WriteHeader(HeaderKind kind, std::initializer_list<std::string_view> columns);
    void FlushWhenFull();
    void WriteBuffer();
    [[noreturn]] void Fail(const char* attempt) const;

    std::string m_finalPath;
    std::string m_temporaryPath;
    port::File m_file;
    std::string m_buffer;
    bool m_onDisk = false; // under its temporary name
};

} // namespace engine
