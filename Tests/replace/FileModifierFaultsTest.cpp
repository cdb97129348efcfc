#include "foundation/FileSystemCalls.h"
#include "replace/FileModifierErrors.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRun.h"
#include "replace/SaveToDisk.h"
#include "replace/TDSelectedMatchReplacement.h"

#include <QHash>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Carries the calls out, writes down which step of a rewrite each belongs to, and lets one of them fail.
class FaultyCalls : public FileSystemCalls
{
public:
    explicit FaultyCalls(const FilePath &original) : _original(original) { setCurrent(this); }
    ~FaultyCalls() override { setCurrent(nullptr); }

    QList<qsizetype> failAt; ///< indexes of the calls that fail
    int errorNumber = EIO;
    std::function<void(const QByteArray &step)> before = [](const QByteArray &) {};
    QList<QByteArray> steps;

    int open(const char *path, int flags, mode_t mode) override
    {
        const bool isOriginal = _original.bytes() == path;
        const QByteArray role = (flags & O_CREAT) != 0          ? "copy"
                                : (flags & O_DIRECTORY) != 0    ? "folder"
                                : !isOriginal                   ? "backup"
                                : (flags & O_ACCMODE) == O_RDWR ? "file to write"
                                                                : "file to copy";
        if (_fails(role == "copy" ? "reserve backup" : "open " + role))
            return -1;
        const int descriptor = FileSystemCalls::open(path, flags, mode);
        _roles.insert(descriptor, role);
        return descriptor;
    }
    ssize_t read(int descriptor, void *bytes, size_t count) override
    {
        return _fails("read lines") ? -1 : FileSystemCalls::read(descriptor, bytes, count);
    }
    ssize_t pread(int descriptor, void *bytes, size_t count, off_t offset) override
    {
        return _fails("read " + _roles.value(descriptor, "backup"))
                   ? -1
                   : FileSystemCalls::pread(descriptor, bytes, qMin(count, MOST_READ), offset);
    }
    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        // The first one writes less than it should.
        const bool isFirst = !steps.contains("write");
        if (!_fails("write"))
            return FileSystemCalls::pwrite(descriptor, bytes, isFirst ? count / 2 : count, offset);
        (void)FileSystemCalls::pwrite(descriptor, bytes, count / 3, offset);
        errno = errorNumber;
        return -1;
    }
    int reserve(int descriptor, off_t offset, off_t length) override
    {
        return _fails("reserve") ? -1 : FileSystemCalls::reserve(descriptor, offset, length);
    }
    int takeLease(int descriptor) override
    {
        return _fails("take lease") ? -1 : FileSystemCalls::takeLease(descriptor);
    }
    int truncate(int descriptor, off_t size) override
    {
        return _fails("truncate") ? -1 : FileSystemCalls::truncate(descriptor, size);
    }
    int sync(int descriptor) override { return _fails("sync " + _roles.value(descriptor)) ? -1 : 0; }
    int close(int descriptor) override
    {
        const bool fails = _fails("close " + _roles.value(descriptor));
        FileSystemCalls::close(descriptor);
        errno = errorNumber;
        return fails ? -1 : 0;
    }
    int remove(const char *path) override
    {
        return _fails("remove backup") ? -1 : FileSystemCalls::remove(path);
    }
    int copyContent(int from, int to, std::optional<QByteArrayView> content) override
    {
        struct stat status = {};
        EXPECT_EQ(fstat(to, &status), 0);
        EXPECT_EQ(status.st_mode & 077, 0U) << "open to others while it is filled";
        if (!_fails("copy"))
            return FileSystemCalls::copyContent(from, to, content);
        EXPECT_EQ(FileSystemCalls::write(to, "part", 4), 4);
        errno = errorNumber;
        return -1;
    }

private:
    static constexpr size_t MOST_READ = 16384;

    bool _fails(const QByteArray &step)
    {
        before(step);
        steps << step;
        errno = errorNumber;
        return failAt.contains(steps.size() - 1);
    }

    FilePath _original;
    QHash<int, QByteArray> _roles;
};

/// What a failed rewrite leaves.
enum class Left {
    Old,           ///< the old content, and no backup
    New,           ///< the new content, and no backup
    NewWithBackup, ///< the new content, which may not be on the disk, and a backup
};

struct Step
{
    QByteArray name;
    qint64 errorCode; ///< when it fails; 0: that does no harm
    Left left;
};

const QList<Step> STEPS = {
    {"open file to copy", 26, Left::Old},
    {"reserve backup", 25, Left::Old},
    {"read file to copy", 26, Left::Old},
    {"copy", 26, Left::Old},
    {"read copy", 26, Left::Old},
    {"sync copy", 26, Left::Old},
    {"open folder", 26, Left::Old},
    {"sync folder", 26, Left::Old},
    {"close folder", 0, Left::New},
    {"close file to copy", 0, Left::New},
    {"close copy", 0, Left::New},
    {"open file to write", 31, Left::Old},
    {"take lease", 0, Left::New},
    {"read file to write", 34, Left::Old},
    {"write", 34, Left::Old},
    {"truncate", 32, Left::Old},
    {"sync file to write", 34, Left::NewWithBackup},
    {"close file to write", 33, Left::NewWithBackup},
    {"remove backup", 27, Left::NewWithBackup},
};

class FileModifierFaultsTest : public ReplaceTest
{
protected:
    /// Long enough for several reads, with changes in the first and the last line.
    static QByteArray content(const QByteArray &match)
    {
        return match + " first\n" + QByteArray(1000, 'x').append('\n').repeated(60) + "last " + match +
               "\r\n";
    }
    const QByteArray _old = content("needle");
    const QByteArray _new = content("pin");

    static std::shared_ptr<TDMatchLine> changedLine(qint64 number, const QString &before,
                                                    const QString &after)
    {
        auto line = std::make_shared<TDMatchLine>();
        line->setLineNumber(number);
        line->setSavedLineString(before);
        line->setMatchLineString(after);
        return line;
    }
    std::shared_ptr<TDFindResultItem> changedFile(const QByteArray &name, const QByteArray &tail = {}) const
    {
        const FilePath path = _folder.write(name, _old + tail);
        auto file = TDFindResultItem::initWithFile(path, TDFileCommon::fileModificationDate(path),
                                                   u"needle"_s, false);
        file->setMatches({{changedLine(1, u"needle first\n"_s, u"pin first\n"_s),
                           changedLine(62, u"last needle\r\n"_s, u"last pin\r\n"_s)},
                          {},
                          false,
                          {}});
        return file;
    }
    bool save(TDFindResultItem &file, TDError &error) const
    {
        return saveToDiskFindResultItem(
            file, [this](const FilePath &) { return _areFilesSearchLocations; }, error);
    }
    QList<FilePath> backups() const
    {
        QList<FilePath> backups;
        const TemporaryFolder &folder = _areFilesSearchLocations ? _transientFolder : _folder;
        for (const QByteArray &name : backupNames(folder))
            backups << folder.path(name);
        return backups;
    }
    void expectNothingIsLost(const FilePath &path) const
    {
        const QByteArray now = contentOfFile(path);
        bool isSafe = now == _old || now == _new;
        for (const FilePath &backup : backups())
            isSafe = isSafe || contentOfFile(backup) == _old;
        EXPECT_TRUE(isSafe);
    }
    void failEveryCall();
};

void FileModifierFaultsTest::failEveryCall()
{
    setKeepsBackups(false);
    QList<QByteArray> steps;
    for (qsizetype call = -1; call < steps.size(); ++call) {
        const QByteArray name = "file" + QByteArray::number(call) + ".txt";
        const auto file = changedFile(name);
        TDError error;
        FaultyCalls calls(file->path());
        calls.failAt = {call};
        const bool saved = save(*file, error);
        if (call < 0) {
            steps = calls.steps;
            EXPECT_TRUE(saved);
            EXPECT_TRUE(_folder.read(name) == _new);
            QList<QByteArray> order;
            for (const QByteArray &step : steps) {
                if (!order.contains(step))
                    order << step;
            }
            ASSERT_EQ(order.size(), STEPS.size()) << order.join(", ").constData();
            for (qsizetype index = 0; index < STEPS.size(); ++index)
                EXPECT_EQ(order[index], STEPS[index].name);
            EXPECT_GE(steps.count("write"), 2);
            continue;
        }
        SCOPED_TRACE(steps[call].toStdString() + ", call " + std::to_string(call));
        const Step expected = *std::find_if(STEPS.begin(), STEPS.end(),
                                            [&](const Step &step) { return step.name == steps[call]; });
        // The file is read before and after its change.
        if (expected.name == "read file to write" && error.code() == EIO)
            error = writeError(file->path(), {}, {}, FileNow::AsItWas);
        EXPECT_EQ(error.code(), expected.errorCode) << error.localizedDescription().toStdString();
        EXPECT_EQ(saved, expected.errorCode == 0);
        EXPECT_TRUE(_folder.read(name) == (expected.left == Left::Old ? _old : _new));
        ASSERT_EQ(backups().size(), expected.left == Left::NewWithBackup ? 1 : 0);
        for (const FilePath &backup : backups()) {
            EXPECT_TRUE(contentOfFile(backup) == _old);
            ::unlink(backup.cString());
        }
    }
}

TEST_F(FileModifierFaultsTest, EveryCallThatFailsGivesItsErrorAndLosesNothing)
{
    failEveryCall();
}

TEST_F(FileModifierFaultsTest, ALongFileThatCantBeReadForItsNewContentIsUntouched)
{
    const QByteArray tail(BackupFile::LONGEST_CONTENT_HELD, '-');
    const auto file = changedFile("long.txt", tail);
    FaultyCalls calls(file->path());
    calls.before = [&](const QByteArray &step) {
        if (step == "read lines")
            calls.failAt << calls.steps.size();
    };
    TDError error;
    EXPECT_FALSE(save(*file, error));
    EXPECT_EQ(error.code(), EIO);
    EXPECT_TRUE(_folder.read("long.txt") == _old + tail);
    EXPECT_TRUE(backups().isEmpty());
}

TEST_F(FileModifierFaultsTest, TheSameHoldsForTransientBackups)
{
    _areFilesSearchLocations = true;
    failEveryCall();
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(FileModifierFaultsTest, AnyTwoCallsThatFailLoseNothing)
{
    setKeepsBackups(false);
    const auto file = changedFile("a.txt");
    TDError error;
    qsizetype count = 0;
    {
        FaultyCalls calls(file->path());
        EXPECT_TRUE(save(*file, error));
        count = calls.steps.size();
    }
    for (qsizetype first = 0; first < count; ++first) {
        for (qsizetype second = first + 1; second < count + 2; ++second) {
            const auto again = changedFile("a.txt");
            FaultyCalls calls(again->path());
            calls.failAt = {first, second};
            const bool saved = save(*again, error);
            SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
            expectNothingIsLost(again->path());
            EXPECT_TRUE(!saved || _folder.read("a.txt") == _new);
            for (const FilePath &backup : backups())
                ::unlink(backup.cString());
        }
    }
}

TEST_F(FileModifierFaultsTest, WhatSomebodyPutsInThePlaceOfAFileIsNeverWrittenTo)
{
    const FilePath other = _folder.write("other.txt", "other");
    const FilePath path = _folder.path("a.txt");
    const QList<std::function<void()>> changes = {
        [&] { ::unlink(path.cString()); },
        [&] {
            EXPECT_TRUE(::unlink(path.cString()) == 0 && ::symlink(other.cString(), path.cString()) == 0);
        },
        [&] { EXPECT_TRUE(::unlink(path.cString()) == 0 && ::link(other.cString(), path.cString()) == 0); },
        [&] { EXPECT_TRUE(::unlink(path.cString()) == 0 && ::mkdir(path.cString(), 0700) == 0); },
        [&] { EXPECT_TRUE(::unlink(path.cString()) == 0 && ::mkfifo(path.cString(), 0700) == 0); },
    };
    for (const Step &step : STEPS) {
        for (qsizetype change = 0; change < changes.size(); ++change) {
            std::filesystem::remove_all(path.cString());
            const auto file = changedFile("a.txt");
            TDError error;
            bool isDone = false;
            {
                FaultyCalls calls(path);
                calls.before = [&](const QByteArray &name) {
                    if (name == step.name && !std::exchange(isDone, true))
                        changes[change]();
                };
                (void)save(*file, error);
            }
            SCOPED_TRACE(step.name.toStdString() + ", change " + std::to_string(change));
            EXPECT_TRUE(isDone);
            EXPECT_EQ(_folder.read("other.txt"), "other");
            for (const FilePath &backup : backups())
                ::unlink(backup.cString());
        }
    }
}

TEST_F(FileModifierFaultsTest, TheLongTextsTellWhatToRestore)
{
    const auto file = changedFile("a.txt");
    TDError error;
    {
        FaultyCalls calls(file->path());
        calls.errorNumber = ENOSPC;
        // Neither the new content nor the old one can be written any more.
        calls.before = [&](const QByteArray &step) {
            if (step == "write" && calls.steps.contains("write"))
                calls.failAt << calls.steps.size();
        };
        EXPECT_FALSE(save(*file, error));
    }
    EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_WRITE_DATA_ERROR));
    ASSERT_EQ(backups().size(), 1);
    EXPECT_TRUE(contentOfFile(backups().first()) == _old);
    EXPECT_FALSE(RewriteRun::isPathToModifiedFile(file->path()));
    EXPECT_EQ(
        error.localizedDescription(),
        u"Sorry, a problem occured whilst attempting to modify a file. You will need to restore the file "
        u"from "
        "the automatic backup that was created.\n\nWriting data to file ‘%1’ failed with exception 'No space "
        "left on device'.\n\nError Code: 34"_s.arg(file->path().displayText()));
    EXPECT_EQ(
        error.localizedRecoverySuggestion(),
        u"To restore the file use Finder to copy file ‘%1’ to file ‘%2’. Afterwards delete the backup file."_s
            .arg(backups().first().displayText(), file->path().displayText()));
}

TEST_F(FileModifierFaultsTest, AChangeAtAnyMomentBeforeTheFirstByteIsNoticed)
{
    // Another program writes as many bytes and puts the date back, or changes nothing but the rights.
    const auto writeInto = [](const FilePath &path, const FileDate &date) {
        const int file = ::open(path.cString(), O_WRONLY);
        EXPECT_EQ(::pwrite(file, "NEEDLE", 6, 0), 6);
        EXPECT_EQ(::close(file), 0);
        setModificationDate(path, date.nanoseconds);
    };
    const auto changeRights = [](const FilePath &path, const FileDate &) {
        EXPECT_EQ(::chmod(path.cString(), 0600), 0);
    };
    for (const bool changesContent : {true, false}) {
        for (const QByteArray moment :
             {"copy", "read copy", "sync copy", "close copy", "open file to write"}) {
            SCOPED_TRACE(moment.toStdString() + (changesContent ? " content" : " rights"));
            const auto file = changedFile("a.txt");
            const FileDate date = file->modificationDate().value();
            TDError error;
            bool isDone = false;
            FaultyCalls calls(file->path());
            calls.before = [&](const QByteArray &step) {
                if (step == moment && !std::exchange(isDone, true))
                    (changesContent ? +writeInto : +changeRights)(file->path(), date);
            };
            EXPECT_FALSE(save(*file, error));
            EXPECT_TRUE(isDone);
            EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR)) << error.code();
            EXPECT_TRUE(_folder.read("a.txt") == (changesContent ? "NEEDLE" + _old.mid(6) : _old));
            EXPECT_EQ(_folder.names(), QList<QByteArray>{"a.txt"});
        }
    }
}

TEST_F(FileModifierFaultsTest, ADateThatChangesBehindTheFirstLookIsNoticed)
{
    const auto file = changedFile("a.txt");
    TDError error;
    FaultyCalls calls(file->path());
    calls.before = [&](const QByteArray &step) {
        if (step == "open file to copy")
            setModificationDate(file->path(), 1);
    };
    EXPECT_FALSE(save(*file, error));
    EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR)) << error.code();
    EXPECT_TRUE(_folder.read("a.txt") == _old);
}

TEST_F(FileModifierFaultsTest, WhatBecomesOfABackupNeverGetsIntoTheFile)
{
    for (const int size : {1, 40}) {
        // Long contents aren't held in memory.
        const QByteArray old = _old + QByteArray(1000, 'x').append('\n').repeated(size * 60);
        const FilePath other = _folder.write("other.txt", "other");
        for (const auto &[name, change] : std::initializer_list<std::pair<
                 const char *, std::function<void(const FilePath &)>>>{{"removed",
                                                                        [](const FilePath &backup) {
                                                                            ::unlink(backup.cString());
                                                                        }},
                                                                       {"a link",
                                                                        [&](const FilePath &backup) {
                                                                            ::unlink(backup.cString());
                                                                            EXPECT_EQ(
                                                                                ::symlink(other.cString(),
                                                                                          backup.cString()),
                                                                                0);
                                                                        }},
                                                                       {"rewritten",
                                                                        [](const FilePath &backup) {
                                                                            writeFile(backup,
                                                                                      "something else\n");
                                                                        }}}) {
            SCOPED_TRACE(std::string(name) + ", " + std::to_string(old.size()));
            const auto file = changedFile("a.txt");
            writeFile(file->path(), old);
            file->setModificationDate(TDFileCommon::fileModificationDate(file->path()));
            TDError error;
            bool isDone = false;
            {
                FaultyCalls calls(file->path());
                calls.before = [&, change = change](const QByteArray &step) {
                    if (step == "open file to write" && !std::exchange(isDone, true))
                        change(backups().value(0));
                };
                EXPECT_FALSE(save(*file, error));
            }
            EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_COPY_ORIGINAL_ERROR));
            EXPECT_TRUE(_folder.read("a.txt") == old);
            for (const FilePath &backup : backups())
                ::unlink(backup.cString());
        }
    }
}

TEST_F(FileModifierFaultsTest, OnlyWhatChangesIsWrittenAndNothingIsEverEmpty)
{
    struct Writes : FileSystemCalls
    {
        Writes() { setCurrent(this); }
        ~Writes() override { setCurrent(nullptr); }
        ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
        {
            first = qMin(first, qint64(offset));
            bytesWritten += qint64(count);
            return FileSystemCalls::pwrite(descriptor, bytes, count, offset);
        }
        int truncate(int, off_t size) override { return (smallest = size, 0); }
        qint64 first = 1 << 30;
        qint64 bytesWritten = 0;
        qint64 smallest = 1 << 30;
    };
    const QByteArray filler = QByteArray(1000, 'x').append('\n').repeated(60);
    const FilePath path = _folder.write("a.txt", filler + "needle\n" + filler + "needle\n" + filler);
    const auto file = searchOne(path, u"needle"_s);
    {
        const Writes writes;
        replaceAll({file}, u"needle"_s, u"thread"_s);
        EXPECT_EQ(writes.first, filler.size());
        EXPECT_EQ(writes.bytesWritten, 12);
        EXPECT_EQ(writes.smallest, 1 << 30);
    }
    const auto again = searchOne(path, u"thread"_s);
    const Writes writes;
    const std::atomic<bool> stop = false;
    (void)TDSelectedMatchReplacement(request(u"thread"_s, QString()), stop)
        .replaceSelectedMatches(again->matchLines());
    EXPECT_EQ(writes.first, filler.size());
    EXPECT_EQ(writes.smallest, 3 * filler.size() + 2);
}

TEST_F(FileModifierFaultsTest, WithoutRoomToGrowNothingIsTouched)
{
    struct FullDisk : FileSystemCalls
    {
        FullDisk() { setCurrent(this); }
        ~FullDisk() override { setCurrent(nullptr); }
        int reserve(int, off_t, off_t) override { return (errno = ENOSPC, -1); }
    };
    const QByteArray old = QByteArray("needle\n").repeated(1000);
    const auto file = searchOne(_folder.write("a.txt", old), u"needle"_s);
    const FullDisk disk;
    const std::atomic<bool> stop = false;
    const auto outcome = TDSelectedMatchReplacement(request(u"needle"_s, u"a longer thread"_s), stop)
                             .replaceSelectedMatches(file->matchLines());
    ASSERT_EQ(outcome.failures.size(), 1U);
    EXPECT_EQ(outcome.failures.front().problem, RewriteProblem::NoRoom);
    EXPECT_TRUE(_folder.read("a.txt") == old);
    EXPECT_TRUE(file->modificationDate() == TDFileCommon::fileModificationDate(file->path()));
    EXPECT_EQ(_folder.names(), QList<QByteArray>{"a.txt"});
}

} // namespace
} // namespace tidemark::test
