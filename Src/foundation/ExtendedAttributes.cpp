#include "foundation/ExtendedAttributes.h"

#include "foundation/TextEncoding.h"

#include <cerrno>
#include <sys/xattr.h>

namespace tidemark {

namespace {

/// The text ends at its first zero byte, as some programs store the terminator too.
std::optional<QString> textBeforeZero(QByteArrayView value)
{
    return textFromUtf8(value.first(qsizetype(qstrnlen(value.data(), size_t(value.size())))));
}

#ifdef __APPLE__
QByteArray attributeName(const char *key)
{
    return key;
}

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
#else
QByteArray attributeName(const char *key)
{
    return QByteArray("user.") + key;
}

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
#endif

/// Most values are short: one call reads them, and tells of the most frequent case, that there is none.
template <typename Read>
std::optional<QString> valueRead(Read read, const char *key)
{
    constexpr size_t USUAL_SIZE = 128;
    const QByteArray name = attributeName(key);
    char usual[USUAL_SIZE];
    const ssize_t length = read(name.constData(), usual, USUAL_SIZE);
    if (length >= 0)
        return textBeforeZero(QByteArrayView(usual, length));
    if (errno != ERANGE)
        return {};
    const ssize_t size = read(name.constData(), nullptr, 0);
    if (size < 0)
        return {};
    QByteArray value(size, Qt::Uninitialized);
    const ssize_t longLength = read(name.constData(), value.data(), size_t(size));
    return longLength < 0 ? std::nullopt : textBeforeZero(QByteArrayView(value).first(longLength));
}

/// `file` is a path or a descriptor.
template <typename File>
bool valueWritten(File file, const char *key, const QString &value, int flag)
{
    const QByteArray bytes = value.toUtf8();
    const size_t size = size_t(bytes.size()) + (flag == 1 ? 1 : 0);
    return writeAttribute(file, attributeName(key).constData(), bytes.constData(), size) == 0;
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

} // namespace tidemark
