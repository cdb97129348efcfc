#pragma once

#include "foundation/FilePath.h"
#include "replace/ContentDigest.h"

#include <QSet>

#include <mutex>
#include <vector>

namespace tidemark {

/// What a process that rewrites files leaves behind should it end in the middle: which files were being
/// rewritten, where their old content is, and how the new content can be told. One file in a folder, locked
/// while the process lives; it is made with the first entry and removed with the last. A rewrite is written
/// down, on the disk, before its file is touched, and what became of a file is told from its content, so a
/// crash at any moment leaves no false entry. Any thread.
class RewriteRecord
{
public:
    /// The folder is made when it is needed, for this user only.
    explicit RewriteRecord(const FilePath &folder);
    ~RewriteRecord();
    RewriteRecord(const RewriteRecord &) = delete;
    RewriteRecord &operator=(const RewriteRecord &) = delete;

    /// The one of this process, or null: then nothing is written down.
    static RewriteRecord *current();
    /// The folder for this user's records.
    static FilePath userFolder();

    struct Entry
    {
        FilePath path;
        FilePath backup;
        ContentDigest newContent;
        bool isBackupKept = false;
    };

    /// The name of a backup, before anything is copied to it. The entry may not survive a power cut.
    void noteBackup(const FilePath &path, const FilePath &backup);
    /// The files that are rewritten next. What can't be written down is rewritten all the same: the record
    /// is a help in finding backups, which are there in any case.
    void noteRewrites(const std::vector<Entry> &entries);
    /// What was noted with these backups is over: the new content is in place, or the file wasn't touched.
    void noteEnds(const std::vector<FilePath> &backups);

    /// An entry of a record that was left behind.
    struct LeftEntry : Entry
    {
        bool isBegun = false; ///< false: only the backup was noted, the file wasn't touched
    };
    /// The entries of a record's content that have not ended. What makes no sense is passed over, like a last
    /// line that was cut off.
    static std::vector<LeftEntry> leftEntries(const QByteArray &content);

private:
    bool _open();
    bool _append(const QByteArray &lines);

    FilePath _folder;
    std::mutex _mutex;
    FilePath _path; ///< empty before the first entry
    int _descriptor = -1;
    QSet<FilePath> _openBackups;
};

} // namespace tidemark
