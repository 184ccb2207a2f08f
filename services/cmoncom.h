#pragma once

#include "services/tag_rc.h"
#include "services/tagaddfile.h"

/// Client of the file hand-off service: files reports in the store
/// `<store>/<service>/<partner>/<fileId>.<extension>`.
class cmoncom
{
public:
    /// `mode` is 1.
    explicit cmoncom(int mode);
    virtual ~cmoncom();
    cmoncom(const cmoncom&) = delete;
    cmoncom& operator=(const cmoncom&) = delete;

    /// Copies the record's file into the store, whole or not at all, and gives it an identifier
    /// that rises across processes. `first` is null. `target` is the store's folder; null means
    /// SIGNUTILS_HANDOFF or the default. The extension is that of the record's file path.
    /// False with GetLastRc filled when the record is refused (empty names, names that would leave
    /// the store) or the file cannot be written; raises TPipeException when the store cannot be
    /// reached.
    virtual bool AddFile(const char* first, const char* target, tagADDFILE* record,
                         unsigned long& fileId);

    /// Why the last AddFile returned false.
    virtual const tag_Rc& GetLastRc() const noexcept { return m_lastRc; }

protected:
    tag_Rc m_lastRc;
};
