#pragma once

#include "foundation/Descriptor.h"
#include "search/FolderListing.h"
#include "search/IgnorePatterns.h"
#include "search/LeftOut.h"

#include <QByteArray>

#include <map>
#include <memory>
#include <vector>

namespace tidemark {

/// The ignore files that hold where a walk is: ".gitignore" and ".ignore" of its folder and of those above,
/// up to the root of the repository, whose ".git/info/exclude" holds too, as does the user's own. Files of
/// inner folders go before those of outer ones, ".ignore" before ".gitignore" beside it; then comes what the
/// repository excludes, and last what the user does. Outside a repository those from the location down hold.
/// A repository inside another begins afresh with what is Git's.
class IgnoreRules
{
public:
    IgnoreRules();
    ~IgnoreRules();
    Q_DISABLE_COPY_MOVE(IgnoreRules)

    /// Begins with a location; its own folder is entered next. Subjects are paths below the folder whose
    /// files are looked at first: they begin with what is returned, which ends in a slash or is empty.
    QByteArray enterLocation(const QByteArray &path, CaseRule caseRule);
    /// Reads the ignore files of an open folder, by its listing. The subject of what is in it begins with so
    /// many bytes, its path with these.
    void enterFolder(int descriptor, FolderListing::Marks marks, qsizetype subjectLength,
                     const QByteArray &path);
    void leaveFolder();
    void leaveLocation();

    bool leavesOut(QByteArrayView name, QByteArrayView subject, EntryKind kind);
    /// Whether subjects have to be more than names here.
    bool needSubjects() const;

    /// Adds what the files left out and which are broken.
    void report(LeftOut &leftOut) const;

private:
    struct File;
    struct Use
    {
        std::shared_ptr<File> file;
        qsizetype base = 0; ///< where in a subject the path begins that the patterns are matched with
    };
    struct Level
    {
        size_t uses = 0;              ///< that hold here
        size_t firstOfRepository = 0; ///< before it those that are Git's don't hold
        qsizetype repositoryBase = 0;
    };
    enum class Origin { Git, Anybody };

    std::shared_ptr<File> _readBeside(int folder, const char *name, const QByteArray &folderPath,
                                      Origin origin);
    std::shared_ptr<File> _readOnce(const QByteArray &path);
    void _read(File &file, const Descriptor &descriptor) const;
    void _use(const std::shared_ptr<File> &file, qsizetype base);
    void _useFoldersAbove(const QByteArray &root, QByteArrayView below);
    void _useExcludes(const QByteArray &repository, qsizetype base);
    static QByteArray _repositoryAbove(const QByteArray &folder);

    CaseRule _caseRule = CaseRule::Exact;
    std::shared_ptr<File> _ofUser;
    std::vector<Use> _uses;
    std::vector<Level> _levels;
    int _filesForPaths = 0; ///< how many of those in use have patterns for paths
    /// All that were read, by path: a folder may be walked again, from another location.
    std::map<QByteArray, std::shared_ptr<File>> _known;
};

} // namespace tidemark
