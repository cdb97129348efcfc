#include "matching/LinePrefilter.h"

#include "foundation/StopFlag.h"
#include "matching/ExpressionLoosening.h"
#include "matching/ExpressionTranslation.h"
#include "text/ByteScan.h"
#include "text/PlainTextPrefilter.h"
#include "text/Utf8.h"

#include <hs.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <mutex>
#include <string_view>

namespace tidemark {

namespace {

/// Each literal costs the matcher time.
constexpr size_t MOST_LITERALS = 32;

/// Each match costs time, too. The first ones are always worth it, and behind them one in so many bytes:
/// searching a line for an expression takes far longer than searching it for a text.
constexpr qsizetype FREE_MATCHES = 64;
constexpr qsizetype BYTES_PER_TEXT_MATCH = 16;
constexpr qsizetype BYTES_PER_EXPRESSION_MATCH = 4;

/// Choosing isn't given up before this many bytes are chosen: it costs little until then.
constexpr qsizetype FREE_BYTES = 4096;
bool areMostBytes(qsizetype chosen, qsizetype scanned)
{
    return chosen > FREE_BYTES && chosen > scanned / 8 * 7;
}

/// Larger blocks, which only very long lines make, are scanned in pieces, between which a stop shows.
constexpr qsizetype LARGEST_BLOCK = (1 << 23) - 1;

/// Vectorscan, which has the same interface and counts on from 5.4.3, passes over matches of expressions with
/// some of its vector instructions (seen with 5.4.9 and AVX-512). Its search for literals is sound.
bool findsEveryMatch()
{
    const std::string_view version = hs_version();
    return version.starts_with("5.4.0") || version.starts_with("5.4.1 ") || version.starts_with("5.4.2");
}

using DatabasePointer = std::unique_ptr<hs_database_t, decltype(&hs_free_database)>;

DatabasePointer compiledLiterals(const std::vector<QByteArray> &literals, CaseRule caseRule, unsigned mode)
{
    const unsigned caseFlag = caseRule == CaseRule::Ignore ? HS_FLAG_CASELESS : 0;
    std::vector<const char *> starts;
    std::vector<size_t> lengths;
    for (const QByteArray &literal : literals) {
        starts.push_back(literal.constData());
        lengths.push_back(size_t(literal.size()));
    }
    const std::vector<unsigned> flags(literals.size(), caseFlag);
    hs_database_t *database = nullptr;
    hs_compile_error_t *error = nullptr;
    hs_compile_lit_multi(starts.data(), flags.data(), nullptr, lengths.data(), unsigned(literals.size()),
                         mode, nullptr, &database, &error);
    hs_free_compile_error(error);
    return {database, hs_free_database};
}

DatabasePointer compiledPattern(const QByteArray &pattern, unsigned mode, unsigned commonFlags = 0)
{
    hs_database_t *database = nullptr;
    for (const unsigned flags : {commonFlags, commonFlags | HS_FLAG_PREFILTER}) {
        hs_compile_error_t *error = nullptr;
        hs_compile(pattern.constData(), flags, mode, nullptr, &database, &error);
        hs_free_compile_error(error);
        if (database)
            break;
    }
    return {database, hs_free_database};
}

/// Upper and lower case of ASCII letters need no literals of their own: the matcher ignores it.
std::vector<QByteArray> literalsOf(const std::vector<QString> &texts, CaseRule caseRule)
{
    std::vector<QByteArray> literals;
    for (const QString &text : texts) {
        const QByteArray bytes = generalizedUtf8(text);
        literals.push_back(caseRule == CaseRule::Ignore ? bytes.toLower() : bytes);
    }
    std::sort(literals.begin(), literals.end());
    literals.erase(std::unique(literals.begin(), literals.end()), literals.end());
    return literals;
}

std::vector<QByteArray> requiredLiterals(const PlainTextPattern &pattern)
{
    const PlainTextPrefilter prefilter(pattern);
    std::vector<QByteArray> literals;
    // The more texts, the longer they are; but most of them may turn out to be one literal in different case.
    for (const size_t mostTexts : {size_t(4096), size_t(512), MOST_LITERALS}) {
        literals = literalsOf(prefilter.requiredTexts(mostTexts), pattern.caseRule());
        if (!literals.empty() && literals.size() <= MOST_LITERALS)
            break;
    }
    return literals;
}

/// Takes the ends of matches and keeps the lines they lie in.
class LineCollector
{
public:
    LineCollector(QByteArrayView block, qsizetype bytesPerMatch, std::vector<LineSpan> &lines)
        : _bytes(block.data()), _size(block.size()), _bytesPerMatch(bytesPerMatch), _lines(lines),
          _firstLine(lines.size())
    {}

    /// False when the scan isn't worth going on.
    bool addMatch(qsizetype end)
    {
        if (++_matchCount > FREE_MATCHES + end / _bytesPerMatch)
            return false;
        if (end > _line.start && end <= _line.end)
            return true;
        if (end <= _line.start) {
            // Matches come in the order of their ends. This copes with a matcher that doesn't keep to it.
            _line = {};
            _lineFeed = -1;
            _isOrdered = false;
        }
        _line = _lineAt(end - 1);
        _lines.push_back(_line);
        _chosenBytes += _line.end - _line.start;
        return !areMostBytes(_chosenBytes, _line.end);
    }

    void finish()
    {
        if (_isOrdered)
            return;
        const auto first = _lines.begin() + qsizetype(_firstLine);
        std::sort(first, _lines.end(), [](LineSpan a, LineSpan b) { return a.start < b.start; });
        _lines.erase(std::unique(first, _lines.end()), _lines.end());
    }

private:
    /// Nothing before the line chosen last, and nothing before the next line feed, is looked at twice, so
    /// that the work stays in proportion to the block whatever its lines end with.
    LineSpan _lineAt(qsizetype position)
    {
        if (_bytes[position] == '\n' && position > _line.end && _bytes[position - 1] == '\r')
            --position;
        if (_lineFeed < position)
            _lineFeed = _indexOf('\n', position, _size);
        const qsizetype carriageReturn = _indexOf('\r', position, _lineFeed);
        const qsizetype lastOfText = std::min(carriageReturn, _lineFeed);
        const bool isPair = carriageReturn + 1 == _lineFeed;
        return {_lineStart(position), std::min(_size, lastOfText + (isPair ? 2 : 1))};
    }

    qsizetype _lineStart(qsizetype position) const
    {
        const qsizetype lowest = _line.end;
        const qsizetype afterLineFeed = _afterLast('\n', lowest, position);
        return _afterLast('\r', afterLineFeed, position);
    }

    /// `end` when there is none.
    qsizetype _indexOf(char byte, qsizetype start, qsizetype end) const
    {
        while (start < end) {
            const qsizetype length = std::min(end - start, LARGEST_BLOCK);
            if (const void *found = std::memchr(_bytes + start, byte, size_t(length)))
                return static_cast<const char *>(found) - _bytes;
            _checkAfter(length);
            start += length;
        }
        return end;
    }

    /// `start` when there is none.
    qsizetype _afterLast(char byte, qsizetype start, qsizetype end) const
    {
        while (start < end) {
            const qsizetype length = std::min(end - start, LARGEST_BLOCK);
            const qsizetype found = lastIndexOf(byte, {_bytes + end - length, length});
            if (found >= 0)
                return end - length + found + 1;
            _checkAfter(length);
            end -= length;
        }
        return start;
    }

    /// Blocks that are scanned in one go never come here with so much, so nothing is thrown through the
    /// matcher.
    static void _checkAfter(qsizetype length)
    {
        if (length == LARGEST_BLOCK)
            checkForStop();
    }

    const char *_bytes;
    qsizetype _size;
    qsizetype _bytesPerMatch;
    std::vector<LineSpan> &_lines;
    size_t _firstLine;
    /// The line chosen last.
    LineSpan _line;
    /// The first line feed at or behind the position looked at last, or the block's end.
    qsizetype _lineFeed = -1;
    qsizetype _matchCount = 0;
    qsizetype _chosenBytes = 0;
    bool _isOrdered = true;
};

int takeMatch(unsigned, unsigned long long, unsigned long long end, unsigned, void *collector)
{
    return static_cast<LineCollector *>(collector)->addMatch(qsizetype(end)) ? 0 : 1;
}

/// The ends of a piece's matches, which are looked at when the matcher has returned.
struct MatchEnds
{
    std::vector<qsizetype> ends;
    size_t most = 0;
};

int keepEnd(unsigned, unsigned long long, unsigned long long end, unsigned, void *kept)
{
    auto &matches = *static_cast<MatchEnds *>(kept);
    matches.ends.push_back(qsizetype(end));
    return matches.ends.size() > matches.most ? 1 : 0;
}

} // namespace

struct LinePrefilter::Database
{
    Database(std::function<DatabasePointer(unsigned mode)> compileFor, qsizetype oneMatchInBytes)
        : compile(std::move(compileFor)), compiled(compile(HS_MODE_BLOCK)), bytesPerMatch(oneMatchInBytes)
    {}

    const hs_database_t *forPieces() const
    {
        std::call_once(piecesOnce, [this] { compiledForPieces = compile(HS_MODE_STREAM); });
        return compiledForPieces.get();
    }

    std::function<DatabasePointer(unsigned mode)> compile;
    DatabasePointer compiled;
    qsizetype bytesPerMatch;
    mutable std::once_flag piecesOnce;
    mutable DatabasePointer compiledForPieces = {nullptr, hs_free_database};
};

struct LinePrefilter::Scanner::Implementation
{
    explicit Implementation(const Database &compiledDatabase) : database(compiledDatabase)
    {
        if (hs_alloc_scratch(database.compiled.get(), &scratch) != HS_SUCCESS)
            scratch = nullptr;
    }
    ~Implementation() { hs_free_scratch(scratch); }
    Implementation(const Implementation &) = delete;
    Implementation &operator=(const Implementation &) = delete;

    bool scan(QByteArrayView block, LineCollector &collector)
    {
        return hs_scan(database.compiled.get(), block.data(), unsigned(block.size()), 0, scratch, takeMatch,
                       &collector) == HS_SUCCESS;
    }

    bool scanInPieces(QByteArrayView block, LineCollector &collector)
    {
        const hs_database_t *const forPieces = database.forPieces();
        hs_stream_t *opened = nullptr;
        if (forPieces == nullptr || hs_alloc_scratch(forPieces, &scratch) != HS_SUCCESS ||
            hs_open_stream(forPieces, 0, &opened) != HS_SUCCESS)
            return false;
        const auto close = [](hs_stream_t *stream) { hs_close_stream(stream, nullptr, nullptr, nullptr); };
        const std::unique_ptr<hs_stream_t, decltype(close)> stream(opened, close);
        MatchEnds matches;
        matches.most = size_t(FREE_MATCHES + WORK_BETWEEN_STOP_CHECKS / database.bytesPerMatch);
        for (qsizetype start = 0; start < block.size(); start += WORK_BETWEEN_STOP_CHECKS) {
            checkForStop();
            const qsizetype length = std::min<qsizetype>(block.size() - start, WORK_BETWEEN_STOP_CHECKS);
            matches.ends.clear();
            if (hs_scan_stream(stream.get(), block.data() + start, unsigned(length), 0, scratch, keepEnd,
                               &matches) != HS_SUCCESS)
                return false;
            for (const qsizetype end : matches.ends) {
                if (!collector.addMatch(end))
                    return false;
            }
        }
        return true;
    }

    const Database &database;
    hs_scratch_t *scratch = nullptr;
};

LinePrefilter::LinePrefilter(std::unique_ptr<const Database> database) : _database(std::move(database)) {}

LinePrefilter::~LinePrefilter() = default;

std::unique_ptr<const LinePrefilter> LinePrefilter::forPlainText(const PlainTextPattern &pattern)
{
    const std::vector<QByteArray> literals = requiredLiterals(pattern);
    if (literals.empty())
        return nullptr;
    return _withDatabase([literals, caseRule = pattern.caseRule()](
                             unsigned mode) { return compiledLiterals(literals, caseRule, mode); },
                         BYTES_PER_TEXT_MATCH);
}

std::unique_ptr<const LinePrefilter> LinePrefilter::forExpression(QByteArrayView expression,
                                                                  CaseRule caseRule)
{
    if (!findsEveryMatch())
        return nullptr;
    const std::optional<QByteArray> pattern = translatedExpression(expression, caseRule);
    if (!pattern)
        return nullptr;
    return _withDatabase([pattern = *pattern](unsigned mode) { return compiledPattern(pattern, mode); },
                         BYTES_PER_EXPRESSION_MATCH);
}

std::unique_ptr<const LinePrefilter> LinePrefilter::forUnicodeExpression(QByteArrayView expression,
                                                                         CaseRule caseRule)
{
    if (!findsEveryMatch())
        return nullptr;
    const std::optional<QByteArray> pattern = loosenedExpression(expression, caseRule);
    if (!pattern)
        return nullptr;
    const unsigned flags = HS_FLAG_UTF8 | (caseRule == CaseRule::Ignore ? HS_FLAG_CASELESS : 0);
    return _withDatabase(
        [pattern = *pattern, flags](unsigned mode) { return compiledPattern(pattern, mode, flags); },
        BYTES_PER_EXPRESSION_MATCH);
}

template <typename Compile>
std::unique_ptr<const LinePrefilter> LinePrefilter::_withDatabase(Compile compile, qsizetype bytesPerMatch)
{
    auto database = std::make_unique<const Database>(std::move(compile), bytesPerMatch);
    if (!database->compiled)
        return nullptr;
    return std::unique_ptr<const LinePrefilter>(new LinePrefilter(std::move(database)));
}

LinePrefilter::Scanner::Scanner(const LinePrefilter &prefilter)
    : _implementation(std::make_unique<Implementation>(*prefilter._database))
{}

LinePrefilter::Scanner::~Scanner() = default;

bool LinePrefilter::Scanner::candidateLines(QByteArrayView block, std::vector<LineSpan> &lines)
{
    if (!_implementation->scratch)
        return false;
    LineCollector collector(block, _implementation->database.bytesPerMatch, lines);
    const bool isWholeBlock = block.size() <= LARGEST_BLOCK;
    const bool isWorthIt = isWholeBlock ? _implementation->scan(block, collector)
                                        : _implementation->scanInPieces(block, collector);
    collector.finish();
    return isWorthIt;
}

} // namespace tidemark
