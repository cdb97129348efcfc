#include "matching/BoundedSearch.h"

#include "foundation/StopFlag.h"

#include <ctime>
#include <utility>

namespace tidemark {

namespace {

constexpr qint64 MILLISECOND = 1'000'000;
constexpr std::chrono::milliseconds ALLOWED_PER_LINE(1500);
/// In nanoseconds; several times what the slowest expressions take whose time grows with the line alone.
constexpr qint64 ALLOWED_PER_BYTE = 500;
constexpr qint64 SUSPICIOUS = 50 * MILLISECOND;

qint64 nanoseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return qint64(time.tv_sec) * 1000 * MILLISECOND + time.tv_nsec;
}

} // namespace

SearchEffort::SearchEffort(qsizetype lineSize) : SearchEffort(ALLOWED_PER_LINE)
{
    _allowed += lineSize * ALLOWED_PER_BYTE;
}

SearchEffort::SearchEffort(std::chrono::milliseconds allowed) : _allowed(allowed.count() * MILLISECOND) {}

void SearchEffort::_check()
{
    _bytesToCheck = BYTES_BETWEEN_CHECKS;
    checkForStop();
    if (_current)
        _current->_checkTime();
}

void SearchEffort::_checkTime()
{
    if (isSpent())
        throw ExpressionLimitReached();
}

bool SearchEffort::isSpent()
{
    const qint64 now = nanoseconds(CLOCK_MONOTONIC);
    if (_start == 0)
        _start = now;
    if (now - _start < SUSPICIOUS)
        return false;
    // On a busy machine time passes that this thread doesn't get. Asking its own clock tells, but takes
    // longer.
    const qint64 computed = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
    if (_computeStart == 0)
        _computeStart = computed;
    return computed - _computeStart > _allowed;
}

SearchEffort::Counting::Counting(SearchEffort &effort) : _outer(std::exchange(_current, &effort)) {}

SearchEffort::Counting::~Counting()
{
    _current = _outer;
}

TextRange firstMatch(const boost::regex &expression, QByteArrayView bytes, TextRange range)
{
    const char *start = bytes.data() + range.location;
    boost::cmatch match;
    if (!boost::regex_search(start, start + range.length, match, expression, boost::match_default, start))
        return TextRange::notFound();
    return {match[0].first - bytes.data(), match.length(0)};
}

TextRange firstMatch(const boost::regex &expression, QByteArrayView bytes, TextRange range,
                     SearchEffort &effort)
{
    const SearchEffort::Counting counting(effort);
    const BoundedPosition start(bytes.data() + range.location);
    boost::match_results<BoundedPosition> match;
    if (!boost::regex_search(start, start + range.length, match, expression, boost::match_default, start))
        return TextRange::notFound();
    return {match[0].first.data() - bytes.data(), match.length(0)};
}

} // namespace tidemark
