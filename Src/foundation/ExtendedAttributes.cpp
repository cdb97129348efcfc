#include "foundation/ExtendedAttributes.h"

#include <QStringDecoder>
#include <QVarLengthArray>

#include <cerrno>
#include <sys/xattr.h>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/statfs.h>
#endif

namespace tidemark {

namespace {

/// The text ends at its first zero byte, as some programs store the terminator too.
std::optional<QString> textBeforeZero(QByteArrayView value)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(value.first(qsizetype(qstrnlen(value.data(), size_t(value.size())))));
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

#ifdef __APPLE__
const char *const NAME_PREFIX = "";

ssize_t readAttribute(const char *path, const char *name, void *value, size_t size)
{
    return getxattr(path, name, value, size, 0, XATTR_NOFOLLOW);
}

ssize_t readAttribute(int descriptor, const char *name, void *value, size_t size)
{
    return fgetxattr(descriptor, name, value, size, 0, 0);
}

int writeAttribute(const char *path, const char *name, const void *value, size_t size)
{
    return setxattr(path, name, value, size, 0, 0);
}

int writeAttribute(int descriptor, const char *name, const void *value, size_t size)
{
    return fsetxattr(descriptor, name, value, size, 0, 0);
}

int removeAttribute(int descriptor, const char *name)
{
    return fremovexattr(descriptor, name, 0);
}
#else
const char *const NAME_PREFIX = "user.";

ssize_t readAttribute(const char *path, const char *name, void *value, size_t size)
{
    return lgetxattr(path, name, value, size);
}

ssize_t readAttribute(int descriptor, const char *name, void *value, size_t size)
{
    return fgetxattr(descriptor, name, value, size);
}

int writeAttribute(const char *path, const char *name, const void *value, size_t size)
{
    return setxattr(path, name, value, size, 0);
}

int writeAttribute(int descriptor, const char *name, const void *value, size_t size)
{
    return fsetxattr(descriptor, name, value, size, 0);
}

int removeAttribute(int descriptor, const char *name)
{
    return fremovexattr(descriptor, name);
}
#endif

/// Without an allocation: every file that is read is asked for an attribute.
class AttributeName
{
public:
    explicit AttributeName(const char *key)
    {
        _bytes.append(NAME_PREFIX, qsizetype(qstrlen(NAME_PREFIX)));
        _bytes.append(key, qsizetype(qstrlen(key)) + 1);
    }
    const char *cString() const { return _bytes.constData(); }

private:
    QVarLengthArray<char, 128> _bytes;
};

/// Most values are short: one call reads them, and tells of the most frequent case, that there is none.
template <typename Read>
std::optional<QString> valueRead(Read read, const char *key)
{
    constexpr size_t USUAL_SIZE = 128;
    const AttributeName name(key);
    char usual[USUAL_SIZE];
    const ssize_t length = read(name.cString(), usual, USUAL_SIZE);
    if (length >= 0)
        return textBeforeZero(QByteArrayView(usual, length));
    if (errno != ERANGE)
        return {};
    const ssize_t size = read(name.cString(), nullptr, 0);
    if (size < 0)
        return {};
    QByteArray value(size, Qt::Uninitialized);
    const ssize_t longLength = read(name.cString(), value.data(), size_t(size));
    return longLength < 0 ? std::nullopt : textBeforeZero(QByteArrayView(value).first(longLength));
}

#ifdef __linux__
/// Whether what one file lacks all others on its device lack, too: not where files come from other file
/// systems.
bool isOneFileSystem(int descriptor)
{
    struct statfs status = {};
    return ::fstatfs(descriptor, &status) == 0 && status.f_type != OVERLAYFS_SUPER_MAGIC &&
           status.f_type != FUSE_SUPER_MAGIC && status.f_type != ECRYPTFS_SUPER_MAGIC;
}
#else
bool isOneFileSystem(int)
{
    return false;
}
#endif

/// `file` is a path or a descriptor.
template <typename File>
bool valueWritten(File file, const char *key, const QString &value, int flag)
{
    const QByteArray bytes = value.toUtf8();
    const size_t size = size_t(bytes.size()) + (flag == 1 ? 1 : 0);
    return writeAttribute(file, AttributeName(key).cString(), bytes.constData(), size) == 0;
}

} // namespace

std::optional<QString> pathExtendedAttributeValueForKey(const FilePath &path, const char *key)
{
    return valueRead([&path](const char *name, void *value,
                             size_t size) { return readAttribute(path.cString(), name, value, size); },
                     key);
}

std::optional<QString> descriptorExtendedAttributeValueForKey(int descriptor, const char *key)
{
    return valueRead([descriptor](const char *name, void *value,
                                  size_t size) { return readAttribute(descriptor, name, value, size); },
                     key);
}

std::optional<QString> UserAttributes::value(int descriptor, dev_t device, const char *key)
{
    if (areMissingOn(device))
        return {};
    errno = 0;
    std::optional<QString> found = descriptorExtendedAttributeValueForKey(descriptor, key);
    if (!found && errno == ENOTSUP && isOneFileSystem(descriptor))
        _deviceWithout = device;
    return found;
}

bool setPathValueForExtendedAttributeKey(const FilePath &path, const char *key, const QString &value,
                                         int flag)
{
    return valueWritten(path.cString(), key, value, flag);
}

bool setDescriptorValueForExtendedAttributeKey(int descriptor, const char *key, const QString &value,
                                               int flag)
{
    return valueWritten(descriptor, key, value, flag);
}

bool removeDescriptorExtendedAttribute(int descriptor, const char *key)
{
    return removeAttribute(descriptor, AttributeName(key).cString()) == 0;
}

} // namespace tidemark
