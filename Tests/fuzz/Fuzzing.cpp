#include "Fuzzing.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace tidemark::fuzz {

namespace {

/// How much longer everything takes with sanitizers and coverage.
constexpr double SLOWNESS = 15;

class Folder
{
public:
    Folder()
    {
        char memory[] = "/dev/shm/tidemark-fuzz-XXXXXX";
        char disk[] = "/tmp/tidemark-fuzz-XXXXXX";
        const char *made = mkdtemp(memory);
        if (made == nullptr)
            made = mkdtemp(disk);
        require(made != nullptr, "a temporary folder");
        path = FilePath(made);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path.cString(), ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    FilePath path;
};

double threadTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

} // namespace

unsigned Input::below(unsigned limit)
{
    unsigned value = 0;
    for (unsigned reach = 1; reach < limit && !_bytes.isEmpty(); reach *= 256)
        value = value * 256 + static_cast<unsigned char>(_take(1).front());
    return value % limit;
}

QByteArray Input::line()
{
    const qsizetype end = _bytes.indexOf('\n');
    if (end < 0)
        return rest();
    const QByteArray line = _take(end);
    _take(1);
    return line;
}

QByteArray Input::some()
{
    return _take(qsizetype(below(unsigned(_bytes.size()) + 1)));
}

StringEncoding Input::encoding()
{
    static const QList<StringEncoding> encodings = availableStringEncodings();
    return encodings[below(unsigned(encodings.size()))];
}

QByteArray Input::_take(qsizetype count)
{
    const QByteArray taken = _bytes.first(qMin(count, _bytes.size())).toByteArray();
    _bytes = _bytes.sliced(taken.size());
    return taken;
}

void require(bool holds, const char *condition, const QByteArray &detail)
{
    if (holds)
        return;
    std::fprintf(stderr, "Doesn't hold: %s\n%s\n", condition, detail.constData());
    std::abort();
}

TimeLimit::TimeLimit() : _start(threadTime()) {}

void TimeLimit::check(const char *what, double seconds) const
{
    const double spent = threadTime() - _start;
    require(spent < seconds * SLOWNESS, what, QByteArray::number(spent) + " seconds");
}

FilePath folder()
{
    static const Folder own;
    return own.path;
}

FilePath writeFile(const QByteArray &name, const QByteArray &content)
{
    const FilePath path = folder().appendingPathComponent(name);
    std::ofstream(path.cString(), std::ios::binary).write(content.constData(), content.size());
    return path;
}

QByteArray contentOf(const FilePath &path)
{
    std::ifstream file(path.cString(), std::ios::binary);
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

} // namespace tidemark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    tidemark::fuzz::Input input(QByteArrayView(bytes, qsizetype(size)));
    tidemark::fuzz::run(input);
    return 0;
}
