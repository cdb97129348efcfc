#include "replace/PlanWriter.h"

#include <cerrno>

namespace tidemark {

namespace {

constexpr qsizetype WRITE_BLOCK = 1 << 20;

} // namespace

int PlanWriter::write(const RewritePlan &plan)
{
    for (const RewritePlan::Segment &segment : plan.segments()) {
        const int error =
            segment.isNew ? _append(segment.newBytes) : _appendOldContent(segment.offset, segment.length);
        if (error != 0)
            return error;
    }
    return _flush();
}

int PlanWriter::_append(QByteArrayView bytes)
{
    _pending.append(bytes);
    return _pending.size() < WRITE_BLOCK ? 0 : _flush();
}

int PlanWriter::_appendOldContent(qint64 offset, qint64 length)
{
    while (length > 0) {
        const qsizetype used = _pending.size();
        const qsizetype wanted = qsizetype(qMin(length, qint64(WRITE_BLOCK)));
        _pending.resize(used + wanted);
        const ssize_t count =
            FileSystemCalls::current().pread(_oldContent, _pending.data() + used, size_t(wanted), offset);
        _pending.truncate(used + qMax(ssize_t(0), count));
        if (count < 0)
            return errno;
        // The backup is shorter than it was a moment ago.
        if (count == 0)
            return EIO;
        offset += count;
        length -= count;
        if (_pending.size() >= WRITE_BLOCK) {
            if (const int error = _flush(); error != 0)
                return error;
        }
    }
    return 0;
}

int PlanWriter::_flush()
{
    qsizetype written = 0;
    while (written < _pending.size()) {
        const ssize_t count = FileSystemCalls::current().write(_target, _pending.constData() + written,
                                                               size_t(_pending.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += qMax(ssize_t(0), count);
    }
    _pending.resize(0);
    return 0;
}

} // namespace tidemark
