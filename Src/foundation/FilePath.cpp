#include "foundation/FilePath.h"

namespace tidemark {

namespace {

/// The length of the path without trailing slashes; the root keeps its own.
qsizetype significantLength(const QByteArray &bytes)
{
    qsizetype length = bytes.size();
    while (length > 1 && bytes[length - 1] == '/')
        --length;
    return length;
}

} // namespace

FilePath FilePath::fromDisplayText(const QString &text)
{
    return FilePath(text.toUtf8());
}

FilePath FilePath::fromUrl(const QUrl &fileUrl)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(fileUrl.path(QUrl::FullyEncoded).toLatin1());
    // The system would take what stands before a zero byte for the whole path.
    if (!fileUrl.isValid() || bytes.contains('\0'))
        return {};
    return FilePath(bytes);
}

QUrl FilePath::toUrl() const
{
    return QUrl::fromEncoded("file://" + _bytes.toPercentEncoding("/"), QUrl::StrictMode);
}

QByteArray FilePath::lastPathComponent() const
{
    const QByteArray path = _bytes.left(significantLength(_bytes));
    return path == "/" ? path : path.mid(path.lastIndexOf('/') + 1);
}

FilePath FilePath::deletingLastPathComponent() const
{
    const QByteArray path = _bytes.left(significantLength(_bytes));
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return {};
    return FilePath(slash == 0 ? QByteArray("/") : path.left(slash));
}

FilePath FilePath::appendingPathComponent(const QByteArray &name) const
{
    if (_bytes.isEmpty())
        return FilePath(name);
    return FilePath(_bytes.endsWith('/') ? _bytes + name : _bytes + '/' + name);
}

} // namespace tidemark
