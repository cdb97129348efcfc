#include "foundation/ExtendedAttributes.h"

#include "foundation/TextEncoding.h"

#include <sys/xattr.h>

namespace tidemark {

namespace {

#ifdef __APPLE__
QByteArray attributeName(const char *key)
{
    return key;
}

ssize_t readAttribute(const char *path, const char *name, void *value, size_t size)
{
    return getxattr(path, name, value, size, 0, XATTR_NOFOLLOW);
}

int writeAttribute(const char *path, const char *name, const void *value, size_t size)
{
    return setxattr(path, name, value, size, 0, 0);
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

int writeAttribute(const char *path, const char *name, const void *value, size_t size)
{
    return setxattr(path, name, value, size, 0);
}
#endif

} // namespace

std::optional<QString> pathExtendedAttributeValueForKey(const FilePath &path, const char *key)
{
    const QByteArray name = attributeName(key);
    const ssize_t size = readAttribute(path.cString(), name.constData(), nullptr, 0);
    if (size < 0)
        return {};
    QByteArray value(size, Qt::Uninitialized);
    const ssize_t length = readAttribute(path.cString(), name.constData(), value.data(), size_t(size));
    if (length < 0)
        return {};
    value.truncate(length);
    // The text ends at its first zero byte, as some programs store the terminator too.
    return textFromUtf8(QByteArrayView(value).first(qsizetype(qstrnlen(value.constData(), size_t(length)))));
}

bool setPathValueForExtendedAttributeKey(const FilePath &path, const char *key, const QString &value, int flag)
{
    const QByteArray bytes = value.toUtf8();
    const size_t size = size_t(bytes.size()) + (flag == 1 ? 1 : 0);
    return writeAttribute(path.cString(), attributeName(key).constData(), bytes.constData(), size) == 0;
}

} // namespace tidemark
