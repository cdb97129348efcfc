#include "foundation/UniqueFile.h"

#include "foundation/FileSystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <random>
#include <string_view>

namespace tidemark {

namespace {

constexpr std::string_view UNIQUE_LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr int UNIQUE_ATTEMPTS = 10000;

bool isFree(const QByteArray &path)
{
    struct stat status;
    return ::lstat(path.constData(), &status) != 0;
}

} // namespace

Descriptor makeUniqueFile(QByteArray &pathTemplate,
                          const std::function<int(const QByteArray &path)> &beforeMaking)
{
    const qsizetype letters =
        std::distance(pathTemplate.crbegin(), std::find_if(pathTemplate.crbegin(), pathTemplate.crend(),
                                                           [](char letter) { return letter != 'X'; }));
    static thread_local std::mt19937 random{std::random_device{}()};
    std::uniform_int_distribution<size_t> anyLetter(0, UNIQUE_LETTERS.size() - 1);
    for (int attempt = 0; attempt < UNIQUE_ATTEMPTS; ++attempt) {
        std::generate(pathTemplate.end() - letters, pathTemplate.end(),
                      [&] { return UNIQUE_LETTERS[anyLetter(random)]; });
        if (!isFree(pathTemplate))
            continue;
        if (const int error = beforeMaking ? beforeMaking(pathTemplate) : 0; error != 0) {
            errno = error;
            return {};
        }
        Descriptor descriptor(FileSystemCalls::current().open(
            pathTemplate.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
        if (descriptor.isOpen() || errno != EEXIST)
            return descriptor;
    }
    errno = EEXIST;
    return {};
}

} // namespace tidemark
