#pragma once

#include "search/IgnorePatterns.h"
#include "search/IgnoreRules.h"
#include "search/LeftOut.h"
#include "search/OpenFolders.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace tidemark {

/// What of folders isn't wanted, whatever its kind. A value, made once from the settings when a search
/// starts.
struct EntryFilterOptions
{
    /// As in an ignore file, apart by commas or blanks; they hold relative to each location, and what one of
    /// them takes back is searched whatever ignore files say.
    QString leaveOutPatterns;
    bool searchesHiddenFiles = false;
    bool obeysIgnoreFiles = false;
    qint64 largestFileSize = 0; ///< in bytes; 0: any size

    /// As the settings are now.
    static EntryFilterOptions withUserDefaults();
    /// Under which everything is searched but what is no file of the user's.
    static EntryFilterOptions everything() { return {{}, true, false, 0}; }
};

/// Decides which entries of folders a walk takes up, and counts the others. It follows the walk: asked about
/// an entry, it has been told of every folder from the location down to the one that holds it. What a person
/// names as a location is never asked about.
class EntryFilter
{
public:
    explicit EntryFilter(const EntryFilterOptions &options);

    /// The innermost of the folders is a location's. Ends with leaveLocation().
    void enterLocation(const OpenFolders &folders);
    /// The innermost of them is one in the folder before.
    void enterFolder(const OpenFolders &folders);
    void leaveFolder();
    void leaveLocation();

    /// Of an entry of the innermost folder. What is left out is counted already.
    LeftOutReason reasonAgainst(const char *name, EntryKind kind)
    {
        const LeftOutReason reason = _reasonAgainst(name, kind);
        if (reason != LeftOutReason::None)
            ++_leftOut[reason];
        return reason;
    }
    /// Not 0: files whose size is beyond it are to be left out.
    qint64 largestFileSize() const { return _options.largestFileSize; }
    /// What others found to be left out.
    void count(LeftOutReason reason) { ++_leftOut[reason]; }

    /// So far.
    LeftOut leftOut() const;

private:
    LeftOutReason _reasonAgainst(const char *name, EntryKind kind);
    LeftOutReason _reasonOfPatterns(QByteArrayView name, EntryKind kind);
    void _countSkipped(const FolderListing &listing);
    QByteArrayView _subjectOf(QByteArrayView name);
    void _preparePatterns(CaseRule caseRule);

    EntryFilterOptions _options;
    CaseRule _caseRule = CaseRule::Exact;
    std::optional<IgnorePatterns> _patterns;
    std::vector<quint64> _countsOfPatterns; ///< of _patterns, by index
    std::optional<IgnoreRules> _rules;
    LeftOut _leftOut;
    /// Whether folders matter at all: without patterns nothing has to be kept in mind.
    bool _followsPaths = false;
    /// Of the entry asked about last: the path to the location from the folder whose ignore files hold first,
    /// and the path below the location.
    QByteArray _subject;
    qsizetype _belowLocation = 0;          ///< where in it the latter begins
    qsizetype _locationPathLength = 0;     ///< with a slash at the end
    std::vector<qsizetype> _folderLengths; ///< how much of the subject is the folder's, for each one entered
};

} // namespace tidemark
