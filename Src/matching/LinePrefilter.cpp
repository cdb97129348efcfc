#include "matching/LinePrefilter.h"

#include "foundation/ByteScan.h"
#include "foundation/PlainTextPrefilter.h"
#include "foundation/Utf8.h"
#include "matching/ExpressionTranslation.h"

#include <hs.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace tidemark {

namespace {

/// Each costs the matcher time.
constexpr size_t MOST_LITERALS = 32;

/// Matches cost time of their own. This many are worth it, and after them one in so many bytes: searching a
/// line for an expression takes far longer than searching it for a text.
constexpr qsizetype FREE_MATCHES = 64;
constexpr qsizetype BYTES_PER_TEXT_MATCH = 16;
constexpr qsizetype BYTES_PER_EXPRESSION_MATCH = 4;

/// Below these, lines left out save more than choosing costs.
constexpr qsizetype FREE_BYTES = 4096;
bool areMostBytes(qsizetype chosen, qsizetype scanned)
{
    return chosen > FREE_BYTES && chosen > scanned / 8 * 7;
}

/// Vectorscan, which has the same interface and counts on from 5.4.3, passes over matches of expressions with
/// some of its vector instructions (seen with 5.4.9 and AVX-512). Its search for literals is sound.
bool findsEveryMatch()
{
    const std::string_view version = hs_version();
    return version.starts_with("5.4.0") || version.starts_with("5.4.1 ") || version.starts_with("5.4.2");
}

using DatabasePointer = std::unique_ptr<hs_database_t, decltype(&hs_free_database)>;

DatabasePointer compiledLiterals(const std::vector<QByteArray> &literals, CaseRule caseRule)
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
                         HS_MODE_BLOCK, nullptr, &database, &error);
    hs_free_compile_error(error);
    return {database, hs_free_database};
}

DatabasePointer compiledPattern(const QByteArray &pattern)
{
    hs_database_t *database = nullptr;
    for (const unsigned flags : {0, HS_FLAG_PREFILTER}) {
        hs_compile_error_t *error = nullptr;
        hs_compile(pattern.constData(), flags, HS_MODE_BLOCK, nullptr, &database, &error);
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
            // Matches come in the order of their ends; this is for a matcher that takes it less strictly.
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
        const void *found = start < end ? std::memchr(_bytes + start, byte, size_t(end - start)) : nullptr;
        return found ? static_cast<const char *>(found) - _bytes : end;
    }

    /// `start` when there is none.
    qsizetype _afterLast(char byte, qsizetype start, qsizetype end) const
    {
        const QByteArrayView stretch(_bytes + start, end - start);
        return start + lastIndexOf(byte, stretch) + 1;
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

} // namespace

struct LinePrefilter::Database
{
    DatabasePointer compiled;
    qsizetype bytesPerMatch = 0;
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
    return _withDatabase({compiledLiterals(literals, pattern.caseRule()), BYTES_PER_TEXT_MATCH});
}

std::unique_ptr<const LinePrefilter> LinePrefilter::forExpression(QByteArrayView expression,
                                                                  CaseRule caseRule)
{
    if (!findsEveryMatch())
        return nullptr;
    const std::optional<QByteArray> pattern = translatedExpression(expression, caseRule);
    if (!pattern)
        return nullptr;
    return _withDatabase({compiledPattern(*pattern), BYTES_PER_EXPRESSION_MATCH});
}

std::unique_ptr<const LinePrefilter> LinePrefilter::_withDatabase(Database database)
{
    if (!database.compiled)
        return nullptr;
    auto owned = std::make_unique<const Database>(std::move(database));
    return std::unique_ptr<const LinePrefilter>(new LinePrefilter(std::move(owned)));
}

LinePrefilter::Scanner::Scanner(const LinePrefilter &prefilter)
    : _implementation(std::make_unique<Implementation>(*prefilter._database))
{}

LinePrefilter::Scanner::~Scanner() = default;

bool LinePrefilter::Scanner::candidateLines(QByteArrayView block, std::vector<LineSpan> &lines)
{
    if (!_implementation->scratch)
        return false;
    const Database &database = _implementation->database;
    LineCollector collector(block, database.bytesPerMatch, lines);
    const hs_error_t outcome = hs_scan(database.compiled.get(), block.data(), unsigned(block.size()), 0,
                                       _implementation->scratch, takeMatch, &collector);
    collector.finish();
    return outcome == HS_SUCCESS;
}

} // namespace tidemark
