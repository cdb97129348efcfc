#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tidemark {

/// Puts a new content over that of an open file. Only stretches that differ are written, and the file is cut
/// to its new length last, so what is in front of the first difference is never written, and nobody finds the
/// file empty.
class ContentOverwrite
{
public:
    /// The file must be open for reading and writing, and is of that size in bytes. `oldBytes` are all of it
    /// where they are known, and must stay as long as this object; else they are read.
    ContentOverwrite(int target, qint64 oldSize, QByteArrayView oldBytes = {})
        : _target(target), _oldSize(oldSize), _oldBytes(oldBytes)
    {}

    /// Sees to it that there is room for what the file grows by, where the file system can promise that: 0,
    /// or errno, with nothing changed.
    int reserve(qint64 newSize) const;
    /// The next stretch of the new content, of any length: 0, or errno.
    int put(QByteArrayView bytes);
    /// All of the new content at once, in place of any stretches: 0, or errno.
    int putAll(QByteArrayView bytes);
    // To be called behind the last stretch, one after the other: 0, or errno.
    int putPending();
    int cut();

    /// Whether anything of the file was changed.
    bool hasChangedAnything() const { return _hasChangedAnything; }

private:
    int _putOver(QByteArrayView bytes);
    bool _readPresent(qsizetype count, QByteArrayView &bytes);
    int _write(QByteArrayView bytes, qint64 offset);

    int _target;
    qint64 _oldSize;
    QByteArrayView _oldBytes;
    qint64 _offset = 0;  ///< where what is pending goes
    QByteArray _pending; ///< what was put and isn't written yet
    QByteArray _present;
    bool _hasChangedAnything = false;
};

/// Puts the whole content of an open file over that of another; 0, or errno. The contents are equal
/// afterwards only if nobody else writes to them: compare their digests.
int overwriteWithContentOf(int source, int target);

} // namespace tidemark
