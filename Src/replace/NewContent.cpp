#include "replace/NewContent.h"

#include "foundation/FileSystemCalls.h"

#include <QByteArray>

#include <cerrno>

namespace tidemark {

namespace {

/// A window on the old content that moves front to back, so that short stretches don't cost a call each.
class OldContent
{
public:
    explicit OldContent(int descriptor) : _descriptor(descriptor) {}

    /// At least one byte from the offset on, at most the given number; empty with errno set on a failure.
    QByteArrayView bytesAt(qint64 offset, qint64 most)
    {
        if (offset < _start || offset >= _start + _block.size())
            _readAt(offset);
        const qint64 skipped = offset - _start;
        return QByteArrayView(_block).sliced(skipped, qMin(most, _block.size() - skipped));
    }

private:
    void _readAt(qint64 offset)
    {
        _block.resize(BYTES_AT_ONCE);
        const ssize_t count =
            FileSystemCalls::current().pread(_descriptor, _block.data(), size_t(BYTES_AT_ONCE), offset);
        // The content is shorter than it was a moment ago.
        if (count == 0)
            errno = EIO;
        _block.truncate(qMax(ssize_t(0), count));
        _start = offset;
    }

    int _descriptor;
    qint64 _start = 0;
    QByteArray _block;
};

int handOut(const RewritePlan::Segment &segment, OldContent &oldContent, const ContentSink &sink)
{
    if (segment.isNew)
        return sink(segment.newBytes);
    for (qint64 done = 0; done < segment.length;) {
        const QByteArrayView bytes = oldContent.bytesAt(segment.offset + done, segment.length - done);
        if (bytes.isEmpty())
            return errno;
        if (const int error = sink(bytes); error != 0)
            return error;
        done += bytes.size();
    }
    return 0;
}

} // namespace

int handOutNewContent(const RewritePlan &plan, int oldContent, const ContentSink &sink)
{
    OldContent window(oldContent);
    for (const RewritePlan::Segment &segment : plan.segments()) {
        if (const int error = handOut(segment, window, sink); error != 0)
            return error;
    }
    return 0;
}

int handOutNewContent(const RewritePlan &plan, QByteArrayView oldContent, const ContentSink &sink)
{
    for (const RewritePlan::Segment &segment : plan.segments()) {
        const QByteArrayView bytes = segment.isNew ? QByteArrayView(segment.newBytes)
                                                   : oldContent.sliced(segment.offset, segment.length);
        if (const int error = sink(bytes); error != 0)
            return error;
    }
    return 0;
}

qint64 readFully(int descriptor, char *bytes, qint64 count, qint64 offset)
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t step = FileSystemCalls::current().pread(descriptor, bytes + done, size_t(count - done),
                                                              off_t(offset + done));
        if (step < 0)
            return -1;
        if (step == 0)
            break;
        done += step;
    }
    return done;
}

int writeAll(int descriptor, QByteArrayView bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = FileSystemCalls::current().write(descriptor, bytes.data() + written,
                                                               size_t(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += qMax(ssize_t(0), count);
    }
    return 0;
}

} // namespace tidemark
