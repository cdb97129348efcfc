#include "replace/LossCheck.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/TDSelectedMatchReplacement.h"

#include <QFile>

#include <fcntl.h>
#include <iostream>
#include <random>
#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/inotify.h>
#endif

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int FILE_COUNT = 5000;
constexpr int MOST_LINES_ADDED = 4;

/// Takes its time over writing, so that others have a chance to get in between.
class SlowCalls : public UnflushedCalls
{
public:
    SlowCalls() { setCurrent(this); }
    ~SlowCalls() override { setCurrent(nullptr); }
    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        constexpr size_t MOST_WRITTEN = 1024;
        ::sched_yield();
        return FileSystemCalls::pwrite(descriptor, bytes, qMin(count, MOST_WRITTEN), offset);
    }
};

/// What both processes know.
struct Knowledge
{
    std::atomic<bool> isRunOver = false;
    std::atomic<int> reads = 0;
    std::atomic<int> mixtures = 0;
    std::atomic<int> emptyReads = 0;
    std::atomic<int> additions = 0;
    std::array<std::atomic<int>, FILE_COUNT> linesAdded = {};
};

QByteArray nameOf(int index)
{
    return "file" + QByteArray::number(index);
}

/// Changed at its beginning, in its middle and at its end, so that half of a change shows.
QByteArray contentOf(int index, const QByteArray &word)
{
    const QByteArray between =
        QByteArray("nothing but hay in this line of a file\n").repeated(20 + index % 100);
    return word + " first\n" + between + "then a " + word + "\n" + between + "and a last " + word + "\n";
}

QByteArray linesAdded(int count)
{
    QByteArray lines;
    for (int line = 0; line < count; ++line)
        lines += "added by another program, line " + QByteArray::number(line) + "\n";
    return lines;
}

bool isWhole(int index, const QByteArray &content, int linesOfOthers)
{
    const QByteArray lines = linesAdded(linesOfOthers);
    return content == contentOf(index, "needle") + lines ||
           content == contentOf(index, "a long thread") + lines;
}

/// Another program that works on the same files, most of all on those that are being written at the moment.
class OtherProgram
{
public:
    OtherProgram(const FilePath &folder, Knowledge &knowledge) : _folder(folder), _knowledge(knowledge)
    {
#ifdef __linux__
        _events = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        (void)::inotify_add_watch(_events, folder.cString(), IN_MODIFY);
#endif
    }
    void work()
    {
        while (!_knowledge.isRunOver) {
            for (const int index : _filesOfInterest())
                _use(index);
        }
    }

private:
    QList<int> _filesOfInterest()
    {
        QList<int> indexes;
#ifdef __linux__
        alignas(inotify_event) char buffer[4096];
        const ssize_t length = ::read(_events, buffer, sizeof buffer);
        for (ssize_t place = 0; place < length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + place);
            const QByteArray name(event->name);
            if (name.startsWith("file") && !name.contains('.'))
                indexes << name.mid(4).toInt();
            place += ssize_t(sizeof *event) + event->len;
        }
#endif
        indexes << int(_random() % FILE_COUNT);
        return indexes;
    }
    void _use(int index)
    {
        const unsigned what = _random() % 4;
        const bool isFull = _knowledge.linesAdded[size_t(index)] >= MOST_LINES_ADDED;
        if (what < 2 || isFull)
            (void)_read(index);
        else if (what == 2)
            _append(index);
        else
            _save(index);
    }
    FilePath _path(int index) const
    {
        return _folder.appendingPathComponent(nameOf(index));
    }

    QByteArray _read(int index)
    {
        QFile file(QFile::decodeName(_path(index).bytes()));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            return {};
        const QByteArray content = file.readAll();
        ++_knowledge.reads;
        if (!isWhole(index, content, _knowledge.linesAdded[size_t(index)]))
            ++(content.isEmpty() ? _knowledge.emptyReads : _knowledge.mixtures);
        return content;
    }
    QByteArray _nextLine(int index)
    {
        ++_knowledge.additions;
        const int lines = _knowledge.linesAdded[size_t(index)]++;
        return linesAdded(lines + 1).mid(linesAdded(lines).size());
    }
    void _append(int index)
    {
        const int descriptor = ::open(_path(index).cString(), O_WRONLY | O_APPEND | O_CLOEXEC);
        const QByteArray line = _nextLine(index);
        (void)::write(descriptor, line.constData(), size_t(line.size()));
        (void)::close(descriptor);
    }
    /// As editors do that write a new file.
    void _save(int index)
    {
        const FilePath temporary = _folder.appendingPathComponent(".saving");
        const QByteArray content = _read(index);
        writeFile(temporary, content + _nextLine(index));
        (void)::rename(temporary.cString(), _path(index).cString());
    }

    FilePath _folder;
    Knowledge &_knowledge;
    std::mt19937 _random{20120704};
    int _events = -1;
};

class OtherProgramsTest : public ReplaceTest
{};

TEST_F(OtherProgramsTest, SeeNoHalfOfAChangeAndLoseNothing)
{
    void *memory =
        ::mmap(nullptr, sizeof(Knowledge), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Knowledge &knowledge = *new (memory) Knowledge;
    for (int index = 0; index < FILE_COUNT; ++index)
        _folder.write(nameOf(index), contentOf(index, "needle"));
    setKeepsBackups(false);
    const FindResultItems files = search(_folder.path(), u"needle"_s);
    ASSERT_EQ(files.size(), FILE_COUNT);

    ChildProcess other([&] { OtherProgram(_folder.path(), knowledge).work(); });
    const SlowCalls calls;
    const std::atomic<bool> stop = false;
    const auto outcome = TDSelectedMatchReplacement(request(u"needle"_s, u"a long thread"_s), stop)
                             .replaceSelectedMatches(matchLinesOf(files));
    knowledge.isRunOver = true;
    EXPECT_FALSE(other.waitUntilStopped());

    int lost = 0;
    int told = 0;
    const QList<FilePath> failed = outcome.failedPaths();
    for (int index = 0; index < FILE_COUNT; ++index) {
        if (!isWhole(index, _folder.read(nameOf(index)), knowledge.linesAdded[size_t(index)]))
            ++(failed.contains(_folder.path(nameOf(index))) ? told : lost);
    }
    EXPECT_EQ(lost, 0) << "files that lack a line of the other program's, or hold half of a change, untold";
    EXPECT_EQ(knowledge.mixtures, 0);
    EXPECT_EQ(knowledge.emptyReads, 0);
    EXPECT_GT(outcome.filesRewritten, 0U);
    std::cout << knowledge.reads << " reads, of which " << knowledge.mixtures << " mixed and "
              << knowledge.emptyReads << " empty; " << knowledge.additions
              << " lines added, files with losses: " << lost << " untold, " << told << " told"
              << "; " << outcome.filesRewritten << " files rewritten, " << outcome.failures.size()
              << " refused\n";
    ::munmap(memory, sizeof(Knowledge));
}

} // namespace
} // namespace tidemark::test
