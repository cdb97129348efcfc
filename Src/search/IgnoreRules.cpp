#include "search/IgnoreRules.h"

#include "search/UserIgnoreFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr qint64 LARGEST_IGNORE_FILE = 1 << 24;

/// Empty, with errno in `failure`, for what can't be read.
QByteArray contentOf(int descriptor, int &failure)
{
    struct stat status = {};
    failure = 0;
    if (::fstat(descriptor, &status) != 0)
        failure = errno;
    else if (!S_ISREG(status.st_mode))
        failure = S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
    else if (status.st_size > LARGEST_IGNORE_FILE)
        failure = EFBIG;
    QByteArray content;
    char buffer[4096];
    ssize_t count = 0;
    while (failure == 0 && (count = ::read(descriptor, buffer, sizeof buffer)) != 0) {
        if (count > 0)
            content.append(buffer, count);
        else if (errno != EINTR)
            failure = errno;
    }
    return failure == 0 ? content : QByteArray();
}

QByteArray contentOfFile(const QByteArray &path)
{
    const Descriptor file(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    int failure = 0;
    return file.isOpen() ? contentOf(file.number(), failure) : QByteArray();
}

bool exists(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0;
}

bool isFolder(const QByteArray &path)
{
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QByteArray joined(const QByteArray &folder, const QByteArray &path)
{
    return path.startsWith('/') ? path : folder + '/' + path;
}

/// Where a repository keeps what is common to its working trees: in a tree that was added, ".git" is a file
/// that names another place, and a file there may name the common one.
QByteArray commonFolderOf(const QByteArray &repository)
{
    QByteArray folder = repository + "/.git";
    if (isFolder(folder))
        return folder;
    const QByteArray link = contentOfFile(folder);
    if (!link.startsWith("gitdir:"))
        return folder;
    folder = joined(repository, link.mid(qsizetype(qstrlen("gitdir:"))).trimmed());
    const QByteArray common = contentOfFile(folder + "/commondir").trimmed();
    return common.isEmpty() ? folder : joined(folder, common);
}

QByteArray resolved(const QByteArray &path)
{
    char *real = ::realpath(path.constData(), nullptr);
    QByteArray result(real);
    std::free(real);
    return result;
}

} // namespace

struct IgnoreRules::File
{
    QByteArray path;
    std::optional<IgnorePatterns> patterns;
    Origin origin = Origin::Git;
    int errorNumber = 0;
    quint64 leftOutCount = 0;
};

IgnoreRules::IgnoreRules() = default;
IgnoreRules::~IgnoreRules() = default;

bool IgnoreRules::needSubjects() const
{
    return _filesForPaths > 0 || (_ofUser && _ofUser->patterns->haveOnesForPaths());
}

QByteArray IgnoreRules::enterLocation(const QByteArray &path, CaseRule caseRule)
{
    _caseRule = caseRule;
    if (const FilePath ofUser = userIgnoreFile(); !ofUser.isEmpty())
        _ofUser = _readOnce(ofUser.bytes());
    _levels.push_back({});
    const QByteArray folder = resolved(path);
    const QByteArray repository = _repositoryAbove(folder);
    if (repository.isEmpty())
        return {};
    _useExcludes(repository, 0);
    QByteArray below = folder.mid(repository == "/" ? 1 : repository.size() + 1) + '/';
    _useFoldersAbove(repository, below);
    _levels.back().uses = _uses.size();
    return below;
}

/// Empty where the folder is the root of one itself, as its own listing tells that, or lies in none.
QByteArray IgnoreRules::_repositoryAbove(const QByteArray &folder)
{
    if (folder.isEmpty() || exists(folder + "/.git"))
        return {};
    FilePath above(folder);
    while (above.bytes().size() > 1) {
        above = above.deletingLastPathComponent();
        if (exists(above.appendingPathComponent(".git").bytes()))
            return above.bytes();
    }
    return {};
}

void IgnoreRules::_useFoldersAbove(const QByteArray &root, QByteArrayView below)
{
    FilePath folder(root);
    for (qsizetype base = 0; base < below.size();) {
        for (const char *name : {".gitignore", ".ignore"}) {
            const std::shared_ptr<File> file = _readOnce(folder.appendingPathComponent(name).bytes());
            if (file && qstrcmp(name, ".ignore") == 0)
                file->origin = Origin::Anybody;
            _use(file, base);
        }
        const qsizetype end = below.indexOf('/', base);
        folder = folder.appendingPathComponent(below.sliced(base, end - base).toByteArray());
        base = end + 1;
    }
}

void IgnoreRules::_useExcludes(const QByteArray &repository, qsizetype base)
{
    _levels.back().repositoryBase = base;
    _use(_readOnce(commonFolderOf(repository) + "/info/exclude"), base);
}

void IgnoreRules::enterFolder(int descriptor, FolderListing::Marks marks, qsizetype subjectLength,
                              const QByteArray &path)
{
    const size_t before = _uses.size();
    _levels.push_back(_levels.back());
    if (marks.git) {
        _levels.back().firstOfRepository = before;
        _useExcludes(path == "/" ? QByteArray() : path, subjectLength);
    }
    if (marks.gitIgnore)
        _use(_readBeside(descriptor, ".gitignore", path, Origin::Git), subjectLength);
    if (marks.ignore)
        _use(_readBeside(descriptor, ".ignore", path, Origin::Anybody), subjectLength);
    _levels.back().uses = _uses.size();
}

void IgnoreRules::leaveFolder()
{
    _levels.pop_back();
    const size_t kept = _levels.empty() ? 0 : _levels.back().uses;
    for (; _uses.size() > kept; _uses.pop_back())
        _filesForPaths -= _uses.back().file->patterns->haveOnesForPaths() ? 1 : 0;
}

void IgnoreRules::leaveLocation()
{
    while (!_levels.empty())
        leaveFolder();
}

std::shared_ptr<IgnoreRules::File> IgnoreRules::_readBeside(int folder, const char *name,
                                                            const QByteArray &folderPath, Origin origin)
{
    const QByteArray path = FilePath(folderPath).appendingPathComponent(name).bytes();
    if (const auto known = _known.find(path); known != _known.end())
        return known->second;
    const auto file = std::make_shared<File>();
    file->path = path;
    file->origin = origin;
    // Git doesn't follow links here either.
    const Descriptor descriptor(
        ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    _read(*file, descriptor);
    return _known[path] = file;
}

/// Of a file that need not exist; null then.
std::shared_ptr<IgnoreRules::File> IgnoreRules::_readOnce(const QByteArray &path)
{
    if (const auto known = _known.find(path); known != _known.end())
        return known->second;
    const Descriptor descriptor(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor.isOpen() && (errno == ENOENT || errno == ENOTDIR))
        return nullptr;
    const auto file = std::make_shared<File>();
    file->path = path;
    _read(*file, descriptor);
    return _known[path] = file;
}

/// Where there is no descriptor its reason is in errno.
void IgnoreRules::_read(File &file, const Descriptor &descriptor) const
{
    QByteArray content;
    if (descriptor.isOpen())
        content = contentOf(descriptor.number(), file.errorNumber);
    else
        file.errorNumber = errno;
    file.patterns = IgnorePatterns::ofFile(content, _caseRule);
}

void IgnoreRules::_use(const std::shared_ptr<File> &file, qsizetype base)
{
    if (!file || file->patterns->isEmpty())
        return;
    _uses.push_back({file, base});
    _filesForPaths += file->patterns->haveOnesForPaths() ? 1 : 0;
}

bool IgnoreRules::leavesOut(QByteArrayView name, QByteArrayView subject, EntryKind kind)
{
    const Level &level = _levels.back();
    const auto decides = [&](File &file, qsizetype base, bool &decision) {
        const QByteArrayView path = subject.size() > base ? subject.sliced(base) : name;
        const int match = file.patterns->lastMatch(name, path, kind);
        if (match < 0)
            return false;
        decision = !file.patterns->all()[size_t(match)].takesBack();
        file.leftOutCount += decision ? 1 : 0;
        return true;
    };
    bool decision = false;
    for (size_t index = level.uses; index-- > 0;) {
        const Use &use = _uses[index];
        if (index < level.firstOfRepository && use.file->origin == Origin::Git)
            continue;
        if (decides(*use.file, use.base, decision))
            return decision;
    }
    return _ofUser && decides(*_ofUser, level.repositoryBase, decision) && decision;
}

void IgnoreRules::report(LeftOut &leftOut) const
{
    for (const auto &[path, file] : _known) {
        if (file->leftOutCount > 0)
            leftOut.byIgnoreFile.append({path, file->leftOutCount});
        QList<QByteArray> faulty;
        for (const IgnorePattern &pattern : file->patterns->all()) {
            if (pattern.fault() != IgnorePattern::Fault::None)
                faulty << pattern.text();
        }
        if (file->errorNumber != 0 || !faulty.isEmpty())
            leftOut.brokenIgnoreFiles.append({FilePath(path), file->errorNumber, faulty});
    }
}

} // namespace tidemark
