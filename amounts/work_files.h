#pragma once

#include "amounts/tdelimitedfile.h"

#include <cstddef>
#include <string>

namespace amounts
{

/// One of the six work files: the order file's whole name followed by the ending.
struct WorkFileKind
{
    const char* ending;
    std::size_t headerLines; ///< lines before the first data row
};

inline constexpr WorkFileKind kTotalsFile = {".veu.bp", 4};   ///< a remittance and currency a row
inline constexpr WorkFileKind kOrdersFile = {".veu.cp", 4};   ///< an order a row
inline constexpr WorkFileKind kDetailsFile = {".veu.cp2", 4}; ///< row by row as the totals
inline constexpr WorkFileKind kCountsFile = {".veu.tot", 4};  ///< as the totals, then the file's
inline constexpr WorkFileKind kErrorsFile = {".veu.err", 1};
inline constexpr WorkFileKind kMainFile = {".veu", 0}; ///< a summary in words

/// In the order in which they are deleted.
inline constexpr WorkFileKind kWorkFiles[] = {kTotalsFile, kOrdersFile, kDetailsFile,
                                              kCountsFile, kErrorsFile, kMainFile};

/// Columns of the work files.
inline constexpr std::size_t kRecord = 0; ///< of the remittance or order, as error rows name it
inline constexpr std::size_t kMarker = 1; ///< a row without it ends the file
inline constexpr std::size_t kRemittanceTotal = 2;
inline constexpr std::size_t kRemittanceCurrency = 3;
inline constexpr std::size_t kRemittanceOrders = 4; ///< of the counts
inline constexpr std::size_t kOrderAmount = 4;
inline constexpr std::size_t kOrderCurrency = 5;
inline constexpr const char* kWholeFileRecord = "*"; ///< marks the counts' rows of the whole file
inline constexpr std::size_t kErrorPosition = 0;     ///< a row without it ends the error file
inline constexpr std::size_t kErrorRecord = 2;
inline constexpr std::size_t kErrorNumber = 3;
inline constexpr std::size_t kErrorMessage = 4;

/// Path of a work file; Windows-1252, as the order file's.
std::string WorkFilePath(const char* fileName, const WorkFileKind& kind);

/// Deletes all work files of an order file. What cannot be deleted stays, and nobody is told.
void DeleteWorkFiles(const char* fileName);

/// The one-line-header flag of a reader for this work file.
constexpr int OneLineHeader(const WorkFileKind& kind)
{
    return kind.headerLines == 1 ? 1 : 0;
}

/// Calls `take` for each row until one lacks its marker.
template <typename Take>
void ForEachRow(TDelimitedFile& file, std::size_t marker, Take&& take)
{
    for (bool more = file.HasRow(); more && !file.CurrentRow().GetAt(marker).empty();
         more = file.NextRow())
    {
        take(file.CurrentRow());
    }
}

} // namespace amounts
