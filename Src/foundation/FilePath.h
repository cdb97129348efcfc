#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QMetaType>
#include <QString>
#include <QUrl>

namespace tidemark {

/// A path as the file system has it: bytes, which need not be valid UTF-8 and are never normalised.
/// Cheap to copy (implicitly shared).
class FilePath
{
public:
    FilePath() = default;
    explicit FilePath(QByteArray bytes) : _bytes(std::move(bytes)) {}

    /// The path a person typed or a dialog returned.
    static FilePath fromDisplayText(const QString &text);
    /// Every file name survives the way to a URL and back. Empty when the URL isn't valid or holds a zero
    /// byte.
    static FilePath fromUrl(const QUrl &fileUrl);
    QUrl toUrl() const;

    const QByteArray &bytes() const { return _bytes; }
    const char *cString() const { return _bytes.constData(); }
    bool isEmpty() const { return _bytes.isEmpty(); }

    /// For people only: bytes that are not UTF-8 show as U+FFFD, so this can't be turned back into a path.
    QString displayText() const { return QString::fromUtf8(_bytes); }

    /// "c.txt" of "/a/b/c.txt"; a trailing slash does not count.
    QByteArray lastPathComponent() const;
    /// "/a/b" of "/a/b/c.txt", "/" of "/a", "" of "a".
    FilePath deletingLastPathComponent() const;
    FilePath appendingPathComponent(const QByteArray &name) const;

    friend bool operator==(const FilePath &, const FilePath &) = default;
    friend bool operator<(const FilePath &left, const FilePath &right) { return left._bytes < right._bytes; }
    friend size_t qHash(const FilePath &path, size_t seed = 0) { return qHash(path._bytes, seed); }

private:
    QByteArray _bytes;
};

} // namespace tidemark

Q_DECLARE_METATYPE(tidemark::FilePath)
