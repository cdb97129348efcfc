#include "matching/UnicodeExpression.h"

#include "foundation/StopFlag.h"
#include "matching/ExpressionComplexity.h"
#include "text/TextEncoding.h"
#include "text/Utf8.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <array>
#include <mutex>

namespace tidemark {

namespace {

/// A line on which the machine code takes more steps from one position is searched again, watched.
constexpr uint32_t QUICK_STEPS = 5000;
/// What it may take between two looks at the clock, in steps of one byte each.
constexpr qsizetype QUICK_BYTES = 200'000'000;
constexpr qsizetype FEWEST_STARTS = 8;

/// The clock is looked at after so many items of the expression, in ordinary lines.
constexpr int ITEMS_BETWEEN_CHECKS = 64;
constexpr qsizetype ORDINARY_LINE = 100'000;

constexpr uint32_t LARGEST_HEAP = 64 << 10; ///< KiB
constexpr uint32_t DEEPEST_NESTING = 10'000'000;
constexpr size_t JIT_STACK_START = 32 << 10;
constexpr size_t JIT_STACK_MOST = 1 << 20;

template <auto release>
struct Releaser
{
    template <typename Object>
    void operator()(Object *object) const
    {
        release(object);
    }
};

using CodePointer = std::unique_ptr<pcre2_code, Releaser<pcre2_code_free>>;
using MatchContextPointer = std::unique_ptr<pcre2_match_context, Releaser<pcre2_match_context_free>>;

MatchContextPointer matchContext(uint32_t steps)
{
    MatchContextPointer context(pcre2_match_context_create(nullptr));
    pcre2_set_match_limit(context.get(), steps);
    pcre2_set_heap_limit(context.get(), LARGEST_HEAP);
    pcre2_set_depth_limit(context.get(), DEEPEST_NESTING);
    return context;
}

/// What a thread needs to search.
class Workspace
{
public:
    static Workspace &ofThread()
    {
        thread_local Workspace workspace;
        return workspace;
    }

    pcre2_match_data *matchData(int groupCount)
    {
        const auto pairs = uint32_t(groupCount + 1);
        if (!_data || pcre2_get_ovector_count(_data.get()) < pairs)
            _data.reset(pcre2_match_data_create(std::max(pairs, 32U), nullptr));
        return _data.get();
    }
    pcre2_match_data *lastData() { return _data.get(); }
    pcre2_match_context *quick() { return _quick.get(); }
    pcre2_match_context *watched() { return _watched.get(); }

private:
    Workspace() { pcre2_jit_stack_assign(_quick.get(), nullptr, _stack.get()); }

    std::unique_ptr<pcre2_jit_stack, Releaser<pcre2_jit_stack_free>> _stack{
        pcre2_jit_stack_create(JIT_STACK_START, JIT_STACK_MOST, nullptr)};
    std::unique_ptr<pcre2_match_data, Releaser<pcre2_match_data_free>> _data;
    MatchContextPointer _quick = matchContext(QUICK_STEPS);
    MatchContextPointer _watched = matchContext(UINT32_MAX);
};

/// What the library calls before each item of the watched expression.
struct Watch
{
    SearchEffort &effort;
    int itemsBetweenChecks;
    int itemsToCheck = 1;
    bool isStopped = false;
    bool isSpent = false;

    static int check(pcre2_callout_block *, void *self)
    {
        auto &watch = *static_cast<Watch *>(self);
        if (--watch.itemsToCheck > 0)
            return 0;
        watch.itemsToCheck = watch.itemsBetweenChecks;
        try {
            checkForStop();
        } catch (const WorkStopped &) {
            watch.isStopped = true;
        }
        watch.isSpent = watch.effort.isSpent();
        return watch.isStopped || watch.isSpent ? PCRE2_ERROR_CALLOUT : 0;
    }
};

CodePointer compiledCode(const QByteArray &pattern, uint32_t options, int &error, PCRE2_SIZE &offset)
{
    const std::unique_ptr<pcre2_compile_context, Releaser<pcre2_compile_context_free>> context(
        pcre2_compile_context_create(nullptr));
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    return CodePointer(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.constData()),
                                     PCRE2_SIZE(pattern.size()), options, &error, &offset, context.get()));
}

TextFault faultAt(const QByteArray &pattern, int error, PCRE2_SIZE offset)
{
    std::array<PCRE2_UCHAR, 256> message = {};
    pcre2_get_error_message(error, message.data(), message.size());
    return {QString::fromUtf8(reinterpret_cast<const char *>(message.data())),
            QString::fromUtf8(pattern.first(std::min(pattern.size(), qsizetype(offset)))).size()};
}

uint32_t infoNumber(const pcre2_code *code, uint32_t what)
{
    uint32_t number = 0;
    pcre2_pattern_info(code, what, &number);
    return number;
}

qsizetype nextCharacter(QByteArrayView text, qsizetype position)
{
    do {
        ++position;
    } while (position < text.size() && (text[position] & 0xC0) == 0x80);
    return position;
}

} // namespace

struct UnicodeExpression::Code
{
    QByteArray pattern;
    uint32_t options = 0;
    CodePointer quick;
    /// Lines of up to so many bytes need neither steps counted nor the clock looked at.
    qsizetype harmlessLineSize = 0;
    /// Searching a line in stretches would change what it matches.
    bool isTiedToStart = false;
    std::once_flag watchedOnce;
    CodePointer watched;

    /// The same expression, which looks at the clock before each of its items, but isn't machine code.
    const pcre2_code *watchedCode()
    {
        std::call_once(watchedOnce, [this] {
            int error = 0;
            PCRE2_SIZE offset = 0;
            watched = compiledCode(pattern, options | PCRE2_AUTO_CALLOUT, error, offset);
        });
        return watched.get();
    }
};

std::shared_ptr<const UnicodeExpression> UnicodeExpression::compiled(const QString &expression,
                                                                     CaseRule caseRule, TextFault &fault)
{
    auto code = std::make_unique<Code>();
    code->pattern = generalizedUtf8(expression);
    code->options = PCRE2_UTF | PCRE2_UCP | PCRE2_NEVER_BACKSLASH_C | PCRE2_USE_OFFSET_LIMIT |
                    (caseRule == CaseRule::Ignore ? PCRE2_CASELESS : 0);
    int error = 0;
    PCRE2_SIZE offset = 0;
    code->quick = compiledCode(code->pattern, code->options, error, offset);
    if (!code->quick) {
        fault = faultAt(code->pattern, error, offset);
        return nullptr;
    }
    // Where there is no machine code, the library interprets the expression.
    (void)pcre2_jit_compile(code->quick.get(), PCRE2_JIT_COMPLETE);
    code->harmlessLineSize = ExpressionComplexity(code->pattern).harmlessLineSize;
    code->isTiedToStart = code->pattern.contains("\\G") || code->pattern.contains("(*");
    return std::shared_ptr<const UnicodeExpression>(new UnicodeExpression(std::move(code)));
}

UnicodeExpression::UnicodeExpression(std::unique_ptr<Code> code)
    : _code(std::move(code)), _groupCount(int(infoNumber(_code->quick.get(), PCRE2_INFO_CAPTURECOUNT)))
{}

UnicodeExpression::~UnicodeExpression() = default;

LineSearch UnicodeExpression::search(QByteArrayView text, qsizetype from, EmptyAtStart emptyAtStart,
                                     SearchEffort &effort) const
{
    checkForStop();
    Workspace &workspace = Workspace::ofThread();
    pcre2_match_data *const data = workspace.matchData(_groupCount);
    const qsizetype size = text.size();
    const uint32_t options =
        PCRE2_NO_UTF_CHECK | (emptyAtStart == EmptyAtStart::NotAllowed ? PCRE2_NOTEMPTY_ATSTART : 0);
    const bool isHarmless = size <= _code->harmlessLineSize;
    const qsizetype starts =
        std::max(FEWEST_STARTS, QUICK_BYTES / QUICK_STEPS / std::max<qsizetype>(1, size));
    const bool isWhole = isHarmless || _code->isTiedToStart || starts >= size - from;
    for (qsizetype start = from;;) {
        const qsizetype last = isWhole ? size : std::min(size, start + starts);
        pcre2_set_offset_limit(workspace.quick(), isWhole ? PCRE2_UNSET : PCRE2_SIZE(last));
        const int found = pcre2_match(_code->quick.get(), reinterpret_cast<PCRE2_SPTR>(text.data()),
                                      PCRE2_SIZE(size), PCRE2_SIZE(start),
                                      start == from ? options : PCRE2_NO_UTF_CHECK, data, workspace.quick());
        if (found > 0)
            return LineSearch::Found;
        if (found != PCRE2_ERROR_NOMATCH)
            return _searchWatched(text, start, start == from ? options : PCRE2_NO_UTF_CHECK, effort);
        if (last >= size)
            return LineSearch::NotFound;
        checkForStop();
        if (effort.isSpent())
            return LineSearch::TooLong;
        start = nextCharacter(text, last);
    }
}

LineSearch UnicodeExpression::_searchWatched(QByteArrayView text, qsizetype from, unsigned options,
                                             SearchEffort &effort) const
{
    Workspace &workspace = Workspace::ofThread();
    Watch watch = {effort, text.size() > ORDINARY_LINE ? 1 : ITEMS_BETWEEN_CHECKS};
    pcre2_set_callout(workspace.watched(), Watch::check, &watch);
    const int found = pcre2_match(_code->watchedCode(), reinterpret_cast<PCRE2_SPTR>(text.data()),
                                  PCRE2_SIZE(text.size()), PCRE2_SIZE(from), options | PCRE2_NO_JIT,
                                  workspace.matchData(_groupCount), workspace.watched());
    pcre2_set_callout(workspace.watched(), nullptr, nullptr);
    if (watch.isStopped)
        checkForStop();
    if (found > 0)
        return LineSearch::Found;
    switch (found) {
    case PCRE2_ERROR_NOMATCH:
        return LineSearch::NotFound;
    case PCRE2_ERROR_CALLOUT:
    case PCRE2_ERROR_MATCHLIMIT:
        return LineSearch::TooLong;
    case PCRE2_ERROR_HEAPLIMIT:
    case PCRE2_ERROR_DEPTHLIMIT:
    case PCRE2_ERROR_NOMEMORY:
        return LineSearch::TooMuchMemory;
    default:
        return LineSearch::Failed;
    }
}

TextRange UnicodeExpression::groupRange(int group)
{
    pcre2_match_data *const data = Workspace::ofThread().lastData();
    if (uint32_t(group) >= pcre2_get_ovector_count(data))
        return TextRange::notFound();
    const PCRE2_SIZE *const offsets = pcre2_get_ovector_pointer(data) + 2 * ptrdiff_t(group);
    if (offsets[0] == PCRE2_UNSET || offsets[1] < offsets[0])
        return TextRange::notFound();
    return {qint64(offsets[0]), qint64(offsets[1] - offsets[0])};
}

QList<int> UnicodeExpression::groupsNamed(const QString &name) const
{
    QList<int> groups;
    const QByteArray bytes = name.toUtf8();
    PCRE2_SPTR first = nullptr;
    PCRE2_SPTR last = nullptr;
    const int entrySize = pcre2_substring_nametable_scan(
        _code->quick.get(), reinterpret_cast<PCRE2_SPTR>(bytes.constData()), &first, &last);
    for (PCRE2_SPTR entry = first; entrySize > 0 && entry <= last; entry += entrySize)
        groups << (entry[0] << 8 | entry[1]);
    std::sort(groups.begin(), groups.end());
    return groups;
}

} // namespace tidemark
