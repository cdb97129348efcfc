#include "replace/ContentDifference.h"

#include "replace/ByteFields.h"
#include "replace/FileState.h"
#include "replace/NewContent.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>

namespace tidemark {

namespace {

/// So many equal bytes count as a place where two contents go on alike. Beginning a further stretch there
/// costs about three bytes.
constexpr qsizetype SURE = 8;
constexpr qsizetype FIRST_WINDOW = 64;
constexpr qsizetype WINDOW_GROWTH = 8;
constexpr qsizetype LARGEST_WINDOW = 1 << 21;

quint64 bytesAt(QByteArrayView view, qsizetype index)
{
    quint64 bytes = 0;
    std::memcpy(&bytes, view.data() + index, sizeof bytes);
    return bytes;
}

qsizetype commonStart(QByteArrayView left, QByteArrayView right)
{
    const qsizetype size = std::min(left.size(), right.size());
    qsizetype index = 0;
    while (index + SURE <= size && bytesAt(left, index) == bytesAt(right, index))
        index += SURE;
    while (index < size && left[index] == right[index])
        ++index;
    return index;
}

qsizetype commonEnd(QByteArrayView left, QByteArrayView right)
{
    const qsizetype size = std::min(left.size(), right.size());
    qsizetype count = 0;
    while (count < size && left[left.size() - 1 - count] == right[right.size() - 1 - count])
        ++count;
    return count;
}

/// A place in the old content and one in the new.
struct Places
{
    qsizetype old = 0;
    qsizetype now = 0;
};

/// Finds where two contents that differ go on alike.
class Resynchronisation
{
public:
    /// Where the two go on alike; both begin with a difference. Their ends when they never do.
    Places find(QByteArrayView old, QByteArrayView now)
    {
        // Most matches are as long as the one before, and so are their replacements.
        if (_areAlike(old, now, _last))
            return _last;
        const qsizetype longest = std::min(std::max(old.size(), now.size()), LARGEST_WINDOW);
        for (qsizetype window = FIRST_WINDOW;; window *= WINDOW_GROWTH) {
            const Places places =
                _findWithin(old.first(std::min(window, old.size())), now.first(std::min(window, now.size())));
            if (places.now >= 0)
                return _last = places;
            if (window >= longest)
                return {old.size(), now.size()};
        }
    }

private:
    static bool _areAlike(QByteArrayView old, QByteArrayView now, Places places)
    {
        return places.old + places.now > 0 && places.old + SURE <= old.size() &&
               places.now + SURE <= now.size() && bytesAt(old, places.old) == bytesAt(now, places.now);
    }
    static size_t _slot(quint64 bytes, size_t mask)
    {
        return size_t((bytes * 0x9E3779B97F4A7C15U) >> 32) & mask;
    }
    /// Negative places when there are none.
    Places _findWithin(QByteArrayView old, QByteArrayView now)
    {
        const size_t mask = std::bit_ceil(size_t(old.size()) * 4 + 1) - 1;
        // Places are lost where two share a slot. What is found behind a lost one is followed back to it.
        _slots.assign(mask + 1, 0);
        for (qsizetype index = 0; index + SURE <= old.size(); ++index) {
            quint32 &slot = _slots[_slot(bytesAt(old, index), mask)];
            slot = slot == 0 ? quint32(index + 1) : slot;
        }
        for (qsizetype index = 0; index + SURE <= now.size(); ++index) {
            const quint32 slot = _slots[_slot(bytesAt(now, index), mask)];
            Places places = {qsizetype(slot) - 1, index};
            if (slot == 0 || bytesAt(old, places.old) != bytesAt(now, places.now))
                continue;
            while (places.old > 0 && places.now > 0 && old[places.old - 1] == now[places.now - 1]) {
                --places.old;
                --places.now;
            }
            return places;
        }
        return {-1, -1};
    }

    Places _last;
    std::vector<quint32> _slots; ///< by hash: places in the old content, plus one
};

/// Puts the stretches one behind the other.
class StretchWriter
{
public:
    void keep(qint64 length) { _kept += length; }
    void change(QByteArrayView old, QByteArrayView now)
    {
        const qsizetype end = commonEnd(old, now);
        old.chop(end);
        now.chop(end);
        while (!old.isEmpty() || !now.isEmpty()) {
            const qsizetype start = commonStart(old, now);
            keep(start);
            old = old.sliced(start);
            now = now.sliced(start);
            if (old.isEmpty() && now.isEmpty())
                break;
            const Places next = _resynchronisation.find(old, now);
            _put(old.first(next.old), next.now);
            old = old.sliced(next.old);
            now = now.sliced(next.now);
        }
        keep(end);
    }
    QByteArray take() { return std::move(_bytes); }

private:
    void _put(QByteArrayView old, qsizetype newLength)
    {
        putNumber(_bytes, quint64(_kept));
        putNumber(_bytes, quint64(newLength));
        putBytes(_bytes, old);
        _kept = 0;
    }

    QByteArray _bytes;
    qint64 _kept = 0; ///< since the last stretch
    Resynchronisation _resynchronisation;
};

/// A window on the old content that moves front to back.
class OldBytes
{
public:
    explicit OldBytes(int descriptor) : _descriptor(descriptor) {}

    /// Null, with errno, when they can't be read.
    QByteArrayView at(qint64 offset, qint64 length)
    {
        if (offset < _start || offset + length > _start + _block.size()) {
            _block.resize(std::max(length, BYTES_AT_ONCE));
            _start = offset;
            _block.truncate(
                std::max<qint64>(0, readFully(_descriptor, _block.data(), _block.size(), offset)));
        }
        if (offset + length <= _start + _block.size())
            return QByteArrayView(_block).sliced(offset - _start, length);
        // It is shorter than it was a moment ago.
        errno = EIO;
        return {};
    }

private:
    int _descriptor;
    qint64 _start = 0;
    QByteArray _block;
};

/// Adjacent ones become one.
void addSegment(std::vector<RewritePlan::Segment> &segments, const RewritePlan::Segment &segment)
{
    RewritePlan::Segment *last = segments.empty() ? nullptr : &segments.back();
    const bool goesOn = last != nullptr && last->isNew == segment.isNew &&
                        (segment.isNew || last->offset + last->length == segment.offset);
    if (!goesOn) {
        segments.push_back(segment);
    } else {
        last->newBytes += segment.newBytes;
        last->length += segment.length;
    }
}

} // namespace

std::optional<QByteArray> differencesOf(const RewritePlan &plan, int oldContent)
{
    const std::optional<FileState> state = stateOfDescriptor(oldContent);
    if (!state)
        return {};
    OldBytes oldBytes(oldContent);
    StretchWriter writer;
    qint64 oldEnd = 0; // of what is dealt with
    QByteArray newBytes;
    const auto changeUpTo = [&](qint64 offset) {
        const QByteArrayView old =
            offset > oldEnd ? oldBytes.at(oldEnd, offset - oldEnd) : QByteArrayView("", 0);
        if (old.isNull())
            return false;
        writer.change(old, newBytes);
        newBytes.clear();
        return true;
    };
    for (const RewritePlan::Segment &segment : plan.segments()) {
        if (segment.isNew) {
            newBytes += segment.newBytes;
            continue;
        }
        if (!changeUpTo(segment.offset))
            return {};
        writer.keep(segment.length);
        oldEnd = segment.offset + segment.length;
    }
    if (!changeUpTo(state->size))
        return {};
    return writer.take();
}

std::optional<RewritePlan> planBack(QByteArrayView differences, qint64 newSize, qint64 oldSize)
{
    std::vector<RewritePlan::Segment> segments;
    FieldReader fields(differences);
    qint64 position = 0; // in the new content
    qint64 size = 0;     // of the old one
    const auto keep = [&](qint64 length) {
        if (length > 0)
            addSegment(segments, {position, length, {}, false});
        position += length;
        size += length;
    };
    while (!fields.isAtEnd()) {
        const qint64 kept = fields.size();
        const qint64 newLength = fields.size();
        const QByteArrayView old = fields.bytes();
        if (!fields.isValid() || kept > newSize - position || newLength > newSize - position - kept)
            return {};
        keep(kept);
        addSegment(segments, {0, old.size(), old.toByteArray(), true});
        position += newLength;
        size += old.size();
    }
    if (!fields.isValid())
        return {};
    keep(newSize - position);
    return size == oldSize ? std::optional(RewritePlan(std::move(segments))) : std::nullopt;
}

RewritePlan composedPlan(const RewritePlan &first, const RewritePlan &second)
{
    std::vector<RewritePlan::Segment> segments;
    auto inner = first.segments().begin();
    const auto end = first.segments().end();
    qint64 start = 0; // of the inner one, in the content between the two
    for (const RewritePlan::Segment &outer : second.segments()) {
        if (outer.isNew) {
            addSegment(segments, outer);
            continue;
        }
        for (qint64 done = 0; done < outer.length;) {
            while (inner != end && start + inner->length <= outer.offset + done)
                start += (inner++)->length;
            if (inner == end)
                break;
            const qint64 skipped = outer.offset + done - start;
            const qint64 count = std::min(outer.length - done, inner->length - skipped);
            addSegment(segments,
                       {inner->offset + skipped, count, inner->newBytes.mid(skipped, count), inner->isNew});
            done += count;
        }
    }
    return RewritePlan(std::move(segments));
}

} // namespace tidemark
