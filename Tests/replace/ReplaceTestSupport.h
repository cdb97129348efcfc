#pragma once

#include "foundation/FileSystemCalls.h"
#include "foundation/UserDefaults.h"
#include "matching/TDFindResultItem.h"
#include "replace/TDReplaceEngine.h"
#include "replace/TDReplacement.h"
#include "support/PlainUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QMap>

#include <sys/stat.h>

namespace tidemark::test {

/// Flushing takes its time and shows nowhere but after a power cut.
class UnflushedCalls : public FileSystemCalls
{
public:
    int sync(int) override { return 0; }
    int syncFileSystem(int) override { return 0; }
};

/// A folder to search in, the settings in force, and a temporary folder of its own for transient backups.
class ReplaceTest : public testing::Test
{
protected:
    ReplaceTest();
    ~ReplaceTest() override;

    void setMode(SearchMode mode);
    void setCaseRule(CaseRule rule);
    void setKeepsBackups(bool keepsBackups);

    /// The file nodes that a search of the location finds, sorted by path.
    FindResultItems search(const FilePath &location, const QString &findText) const;
    std::shared_ptr<TDFindResultItem> searchOne(const FilePath &file, const QString &findText) const;
    /// Of the names in the folder, those of backups.
    static QList<QByteArray> backupNames(const TemporaryFolder &folder);
    static FindResultItems matchLinesOf(const FindResultItems &files);

    ReplaceRequest request(const QString &findText, const QString &replaceText) const;
    /// Replaces in all match lines of all files and expects that nothing fails.
    void replaceAll(const FindResultItems &files, const QString &findText, const QString &replaceText) const;

    TemporaryFolder _folder;
    TemporaryFolder _transientFolder;
    bool _areFilesSearchLocations = false;

private:
    QByteArray _oldTemporaryFolder;
};

/// Everything about a file that a rewrite has to leave alone, but for its content.
struct FileIdentity
{
    ino_t inode = 0;
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    nlink_t links = 0;
    QMap<QByteArray, QByteArray> attributes; ///< without the one for the text encoding

    explicit FileIdentity(const FilePath &path);
    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

/// The process has no rights beyond those of an ordinary user while the object lives.
class OrdinaryUser
{
public:
    /// The folder is given to that user.
    explicit OrdinaryUser(const FilePath &folder);
    ~OrdinaryUser();
};

} // namespace tidemark::test
