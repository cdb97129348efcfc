#include "replace/ReplaceTestSupport.h"

#include "foundation/FileSystemCalls.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "search/TDSearchEngine.h"

#include <algorithm>
#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark::test {

namespace {

class Collector : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override { files << file; }
    void errorOccured(const TDError &error) override
    {
        ADD_FAILURE() << error.localizedDescription().toStdString();
    }
    FindResultItems files;
};

UserDefaults &settings()
{
    return UserDefaults::standard();
}

QByteArray attribute(const FilePath &path, const char *name)
{
    QByteArray value(1024, Qt::Uninitialized);
    value.truncate(qMax(ssize_t(0), getxattr(path.cString(), name, value.data(), size_t(value.size()))));
    return value;
}

} // namespace

ReplaceTest::ReplaceTest() : _oldTemporaryFolder(qgetenv("TMPDIR"))
{
    static UnflushedCalls unflushedCalls;
    FileSystemCalls::setCurrent(&unflushedCalls);
    qputenv("TMPDIR", _transientFolder.path().bytes());
    setMode(SearchMode::PlainText);
    setCaseRule(CaseRule::Exact);
    setKeepsBackups(true);
}

ReplaceTest::~ReplaceTest()
{
    FileSystemCalls::setCurrent(nullptr);
    if (_oldTemporaryFolder.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", _oldTemporaryFolder);
    for (const QString &key : {TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, TD_USER_DEFAULTS_NAME_IGNORE_CASE,
                               TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING})
        settings().setObject(key, {});
}

void ReplaceTest::setMode(SearchMode mode)
{
    settings().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, mode == SearchMode::RegularExpression);
}

void ReplaceTest::setCaseRule(CaseRule rule)
{
    settings().setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, rule == CaseRule::Ignore);
}

void ReplaceTest::setKeepsBackups(bool keepsBackups)
{
    settings().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, keepsBackups);
}

FindResultItems ReplaceTest::search(const FilePath &location, const QString &findText) const
{
    const auto collector = std::make_shared<Collector>();
    TDSearchLocation searchLocation;
    searchLocation.setURL(location.toUrl());
    TDSearchEngine engine;
    engine.setDelegate(collector);
    engine.startSearch(findText, {searchLocation}, !settings().boolFor(BooleanSetting::IgnoreCase));
    std::sort(collector->files.begin(), collector->files.end(),
              [](const auto &left, const auto &right) { return left->path() < right->path(); });
    return collector->files;
}

std::shared_ptr<TDFindResultItem> ReplaceTest::searchOne(const FilePath &file, const QString &findText) const
{
    const FindResultItems files = search(file, findText);
    EXPECT_EQ(files.size(), 1) << file.cString();
    return files.isEmpty() ? TDFindResultItem::initWithFile(file, {}, findText, false) : files.first();
}

QList<QByteArray> ReplaceTest::backupNames(const TemporaryFolder &folder)
{
    QList<QByteArray> names = folder.names();
    names.removeIf([](const QByteArray &name) { return !name.contains(".TDMBackup."); });
    return names;
}

FindResultItems ReplaceTest::matchLinesOf(const FindResultItems &files)
{
    FindResultItems lines;
    for (const auto &file : files)
        lines << file->matchLines();
    return lines;
}

ReplaceRequest ReplaceTest::request(const QString &findText, const QString &replaceText) const
{
    return {findText, replaceText, [this](const FilePath &) { return _areFilesSearchLocations; }};
}

void ReplaceTest::replaceAll(const FindResultItems &files, const QString &findText,
                             const QString &replaceText) const
{
    const std::atomic<bool> stop = false;
    TDSelectedMatchReplacement run(request(findText, replaceText), stop);
    const auto outcome = run.replaceSelectedMatches(matchLinesOf(files));
    EXPECT_TRUE(outcome.error.isNull()) << outcome.error.localizedDescription().toStdString();
}

FileIdentity::FileIdentity(const FilePath &path)
{
    struct stat status = {};
    EXPECT_EQ(lstat(path.cString(), &status), 0) << path.cString();
    inode = status.st_ino;
    mode = status.st_mode;
    owner = status.st_uid;
    group = status.st_gid;
    links = status.st_nlink;
    QByteArray names(4096, Qt::Uninitialized);
    names.truncate(qMax(ssize_t(0), listxattr(path.cString(), names.data(), size_t(names.size()))));
    for (const QByteArray &name : names.split('\0')) {
        if (!name.isEmpty() && !name.endsWith("TextEncoding"))
            attributes.insert(name, attribute(path, name.constData()));
    }
}

OrdinaryUser::OrdinaryUser(const FilePath &folder)
{
    if (!runsAsRoot())
        return;
    EXPECT_EQ(chown(folder.cString(), NOBODY, NOBODY), 0);
    EXPECT_EQ(seteuid(NOBODY), 0);
}

OrdinaryUser::~OrdinaryUser()
{
    if (getuid() == 0) {
        EXPECT_EQ(seteuid(0), 0);
    }
}

} // namespace tidemark::test
