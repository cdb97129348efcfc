#include "replace/LossCheck.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <csignal>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidemark::test {

CallCounts &CallCounts::inSharedMemory()
{
    void *memory =
        ::mmap(nullptr, sizeof(CallCounts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return *new (memory) CallCounts;
}

StoppingCalls::StoppingCalls(CallCounts &counts, StopAt stopAt) : _counts(counts), _stopAt(stopAt)
{
    setCurrent(this);
}

StoppingCalls::~StoppingCalls()
{
    setCurrent(nullptr);
}

void StoppingCalls::_count(CallCounts::Kind kind)
{
    const int numberOfAll = _counts.all++;
    const int numberOfKind = _counts.each[size_t(kind)]++;
    if (_stopAt.kind < 0 ? numberOfAll == _stopAt.number
                         : kind == _stopAt.kind && numberOfKind == _stopAt.number)
        ::kill(::getpid(), SIGSTOP);
}

int StoppingCalls::open(const char *path, int flags, mode_t mode)
{
    return (_count(CallCounts::Open), FileSystemCalls::open(path, flags, mode));
}

ssize_t StoppingCalls::read(int descriptor, void *bytes, size_t count)
{
    return (_count(CallCounts::Read), FileSystemCalls::read(descriptor, bytes, count));
}

ssize_t StoppingCalls::pread(int descriptor, void *bytes, size_t count, off_t offset)
{
    return (_count(CallCounts::Read), FileSystemCalls::pread(descriptor, bytes, count, offset));
}

ssize_t StoppingCalls::write(int descriptor, const void *bytes, size_t count)
{
    return (_count(CallCounts::Write), FileSystemCalls::write(descriptor, bytes, (count + 1) / 2));
}

ssize_t StoppingCalls::pwrite(int descriptor, const void *bytes, size_t count, off_t offset)
{
    return (_count(CallCounts::Write), FileSystemCalls::pwrite(descriptor, bytes, (count + 1) / 2, offset));
}

int StoppingCalls::reserve(int descriptor, off_t offset, off_t length)
{
    return (_count(CallCounts::Reserve), FileSystemCalls::reserve(descriptor, offset, length));
}

int StoppingCalls::truncate(int descriptor, off_t size)
{
    return (_count(CallCounts::Truncate), FileSystemCalls::truncate(descriptor, size));
}

int StoppingCalls::sync(int descriptor)
{
    return (_count(CallCounts::Sync), FileSystemCalls::sync(descriptor));
}

int StoppingCalls::syncFileSystem(int descriptor)
{
    return (_count(CallCounts::SyncFileSystem), FileSystemCalls::syncFileSystem(descriptor));
}

int StoppingCalls::close(int descriptor)
{
    return (_count(CallCounts::Close), FileSystemCalls::close(descriptor));
}

int StoppingCalls::remove(const char *path)
{
    return (_count(CallCounts::Remove), FileSystemCalls::remove(path));
}

int StoppingCalls::copyContent(int from, int to, std::optional<QByteArrayView> content)
{
    return (_count(CallCounts::Copy), FileSystemCalls::copyContent(from, to, content));
}

void Losses::note(int Losses::*what, const FilePath &path, const char *text)
{
    constexpr int MESSAGES_OF_EACH = 5;
    if (this->*what < MESSAGES_OF_EACH)
        messages << path.displayText() + QStringLiteral(": ") + QString::fromUtf8(text);
    ++(this->*what);
}

void LossCheck::add(const FilePath &path, const QByteArray &oldContent, const QByteArray &newContent)
{
    _old.insert(path, oldContent);
    _new.insert(path, newContent);
}

bool LossCheck::isWhole(const FilePath &path, const QByteArray &content) const
{
    return content == oldContent(path) || content == newContent(path);
}

QHash<FilePath, LossCheck::Told> LossCheck::_told(const InterruptedRewrites &rewrites)
{
    QHash<FilePath, Told> told;
    for (const InterruptedRewrites::File &file : rewrites.files())
        told.insert(file.path, {file.backup, file.state == InterruptedRewrites::State::Damaged});
    return told;
}

LossCheck::Contents LossCheck::_contents() const
{
    Contents contents;
    for (const FilePath &path : _old.keys())
        contents.insert(path, contentOfFile(path));
    return contents;
}

void LossCheck::checkAndDecide(Decision decision, Losses &losses) const
{
    InterruptedRewrites rewrites(_stateFolder);
    const Contents before = _contents();
    _checkBeforeDecision(before, _told(rewrites), losses);
    if (decision == Decision::PutBack) {
        (void)rewrites.putBack();
        _checkAfterPuttingBack(before, losses);
    } else if (decision == Decision::Keep) {
        rewrites.keep();
        for (auto file = before.cbegin(); file != before.cend(); ++file) {
            if (contentOfFile(file.key()) != file.value())
                losses.note(&Losses::overwritten, file.key(), "isn't kept as it was");
        }
    }
    if (decision != Decision::Later) {
        EXPECT_TRUE(InterruptedRewrites(_stateFolder).files().isEmpty()) << "what was decided is asked again";
    }
}

void LossCheck::_checkBeforeDecision(const Contents &contents, const QHash<FilePath, Told> &told,
                                     Losses &losses) const
{
    for (auto file = contents.cbegin(); file != contents.cend(); ++file) {
        const FilePath &path = file.key();
        const bool isTold = told.contains(path);
        const Told &what = told.value(path);
        if (isWhole(path, file.value())) {
            if (isTold)
                losses.note(&Losses::falselyTold, path, "is whole and called damaged");
        } else if (!isTold) {
            losses.note(&Losses::lost, path, "is partly written and not told");
        } else if (!what.isUsable || contentOfFile(what.backup) != oldContent(path)) {
            losses.note(&Losses::lost, path, "is partly written and has no usable backup");
        } else {
            ++losses.damaged;
        }
    }
}

void LossCheck::_checkAfterPuttingBack(const Contents &before, Losses &losses) const
{
    for (auto file = before.cbegin(); file != before.cend(); ++file) {
        const FilePath &path = file.key();
        const QByteArray now = contentOfFile(path);
        if (isWhole(path, file.value())) {
            if (now != file.value())
                losses.note(&Losses::overwritten, path, "was whole and was overwritten");
        } else if (now != oldContent(path)) {
            losses.note(&Losses::notPutBack, path, "isn't the old content after it was put back");
        } else if (!_hasCopyBeside(path, file.value())) {
            losses.note(&Losses::presentContentGone, path, "was put back without a copy of what was there");
        }
    }
}

bool LossCheck::_hasCopyBeside(const FilePath &path, const QByteArray &content)
{
    const QString folder = QFile::decodeName(path.deletingLastPathComponent().bytes());
    const QString pattern = QFile::decodeName(path.lastPathComponent()) + QStringLiteral(".TDMBackup.*");
    for (const QString &name : QDir(folder).entryList({pattern}, QDir::Files | QDir::Hidden)) {
        if (contentOfFile(path.deletingLastPathComponent().appendingPathComponent(QFile::encodeName(name))) ==
            content)
            return true;
    }
    return false;
}

ChildProcess::ChildProcess(const std::function<void()> &run) : _id(::fork())
{
    if (_id == 0) {
        // An exception ends this process here, as it would end the program; it mustn't go on with the tests.
        [&run]() noexcept { run(); }();
        ::_exit(0);
    }
    EXPECT_GT(_id, 0);
}

ChildProcess::~ChildProcess()
{
    kill();
}

bool ChildProcess::waitUntilStopped()
{
    EXPECT_EQ(::waitpid(_id, &_status, WUNTRACED), _id);
    _isOver = !WIFSTOPPED(_status);
    return !_isOver;
}

void ChildProcess::kill()
{
    if (_isOver)
        return;
    ::kill(_id, SIGKILL);
    EXPECT_EQ(::waitpid(_id, &_status, 0), _id);
    _isOver = true;
}

int ChildProcess::endedBySignal() const
{
    return WIFSIGNALED(_status) ? WTERMSIG(_status) : 0;
}

} // namespace tidemark::test
