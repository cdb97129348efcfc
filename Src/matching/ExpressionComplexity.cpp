#include "matching/ExpressionComplexity.h"

#include "matching/ExpressionReader.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace tidemark {

namespace {

/// As a power of two: a few thousand ways for each of the expression's states.
constexpr double MOST_WAYS = 12;
/// They may be nested, and each level takes a piece of the stack.
constexpr int MOST_GROUPS_AND_ASSERTIONS = 5000;

/// As a power of two, what a search may take in steps without being watched: a fraction of a second.
constexpr double HARMLESS_STEPS = 23;
constexpr qsizetype LONGEST_LINE_NOT_WATCHED = 1 << 20;

struct Group
{
    bool isLookAround = false;
    bool isLookedBehind = false;
    bool isEmptySoFar = true; ///< the alternative
    int alternatives = 1;
    int emptyAlternatives = 0;
    bool hasChoices = false; ///< there is more than one way to match
};

/// Reads an expression loosely, but never takes a group for something else.
class ComplexityEstimate
{
public:
    ComplexityEstimate(std::string_view expression, ExpressionReader::Blanks blanks)
        : _reader(expression, blanks)
    {
        while (!_reader.isAtEnd())
            _readNext();
        while (_groups.size() > 1)
            _endGroup();
        _endAlternative();
        _addWays();
    }

    bool isTooMuch() const
    {
        return _hangs || _ways > MOST_WAYS || _mostWaysBehind > MOST_WAYS ||
               _depth > MOST_GROUPS_AND_ASSERTIONS;
    }

    /// From each byte of a line, each repetition can end at each byte, and each choice be made: so many
    /// steps.
    qsizetype harmlessLineSize() const
    {
        if (_isUnbounded || _choices > HARMLESS_STEPS)
            return 0;
        const double size = std::exp2((HARMLESS_STEPS - _choices) / (1 + _repetitions));
        return std::min(LONGEST_LINE_NOT_WATCHED, qsizetype(size));
    }

private:
    using Kind = ExpressionToken::Kind;
    using GroupKind = ExpressionToken::Group;

    void _readNext();
    void _readEscape(char escaped);
    void _repeat(char c);
    void _beginGroup(GroupKind kind);
    void _endGroup();
    void _endAlternative();
    void _addWays();
    void _notEmpty() { _groups.back().isEmptySoFar = false; }

    ExpressionReader _reader;
    std::vector<Group> _groups = {Group()};
    double _ways = 0;
    double _waysBehind = 0; ///< through what the look-behind in hand looks at
    double _mostWaysBehind = 0;
    bool _hangs = false;
    int _depth = 0;
    bool _hasLastChoices = false; ///< what a repetition would repeat
    int _repetitions = 0;
    double _choices = 0; ///< as a power of two
    bool _isUnbounded = false;
};

void ComplexityEstimate::_readNext()
{
    const ExpressionToken token = _reader.next();
    if (token.kind == Kind::Repetition)
        return _repeat(token.first());
    _hasLastChoices = false;
    _depth += token.first() == '(' ? 1 : 0;
    switch (token.kind) {
    case Kind::Escape:
        return _readEscape(token.escaped());
    case Kind::Quotation:
        if (token.text.size() > std::string_view("\\Q\\E").size())
            _notEmpty();
        return;
    case Kind::GroupStart:
        return _beginGroup(token.group);
    case Kind::GroupEnd:
        return _groups.size() > 1 ? _endGroup() : _notEmpty();
    case Kind::Call:
        _isUnbounded = true;
        return;
    case Kind::Alternative:
        _endAlternative();
        ++_groups.back().alternatives;
        return;
    case Kind::LineEnd:
        ++_depth;
        return;
    case Kind::LineStart:
    case Kind::Blank:
    case Kind::Flags:
    case Kind::Comment:
    case Kind::Verb:
        return;
    default:
        _notEmpty();
    }
}

void ComplexityEstimate::_repeat(char c)
{
    if (c == '?') {
        ++_choices;
    } else {
        ++_repetitions;
        _isUnbounded = _isUnbounded || _hasLastChoices;
    }
    _groups.back().hasChoices = true;
    _notEmpty();
    _reader.skipBlanks();
    _reader.takeIf("?");
    if (!_reader.takeIf("+"))
        return;
    // Behind a possessive repetition and a comment the library's compiler loops for ever.
    _reader.skipBlanks();
    _hangs = _hangs || _reader.rest().starts_with("(?#");
}

void ComplexityEstimate::_readEscape(char escaped)
{
    if (escaped == '<' || escaped == '>')
        ++_depth;
    if ((escaped >= '1' && escaped <= '9') ||
        std::string_view("gkRX").find(escaped) != std::string_view::npos)
        ++_repetitions;
    if (std::string_view("EbB<>AzZ`'GK").find(escaped) == std::string_view::npos)
        _notEmpty();
}

void ComplexityEstimate::_beginGroup(GroupKind kind)
{
    const bool looksBehind = kind == GroupKind::LookBehind;
    const bool isLookedBehind = _groups.back().isLookedBehind;
    if (looksBehind && !isLookedBehind)
        _waysBehind = 0;
    Group group;
    group.isLookAround = looksBehind || kind == GroupKind::LookAhead;
    group.isLookedBehind = looksBehind || isLookedBehind;
    _groups.push_back(group);
}

void ComplexityEstimate::_endAlternative()
{
    Group &group = _groups.back();
    group.emptyAlternatives += group.isEmptySoFar ? 1 : 0;
    group.isEmptySoFar = true;
}

void ComplexityEstimate::_addWays()
{
    const Group &group = _groups.back();
    _ways += group.emptyAlternatives > 1 ? std::log2(group.emptyAlternatives) : 0;
    if (group.isLookedBehind) {
        _waysBehind += std::log2(group.alternatives);
        _mostWaysBehind = std::max(_mostWaysBehind, _waysBehind);
    }
    _choices += std::log2(group.alternatives);
}

void ComplexityEstimate::_endGroup()
{
    _endAlternative();
    _addWays();
    const bool isPassed = _groups.back().isLookAround || _groups.back().emptyAlternatives > 0;
    _hasLastChoices = _groups.back().hasChoices || _groups.back().alternatives > 1;
    _groups.pop_back();
    _groups.back().hasChoices = _groups.back().hasChoices || _hasLastChoices;
    if (!isPassed)
        _notEmpty();
}

} // namespace

ExpressionComplexity::ExpressionComplexity(QByteArrayView expression)
{
    using Blanks = ExpressionReader::Blanks;
    const std::string_view text(expression.data(), size_t(expression.size()));
    const bool ignoresBlanks = mayChangeFlag(text, 'x');
    const ComplexityEstimate estimate(text, ignoresBlanks ? Blanks::Skipped : Blanks::Kept);
    isTooComplexToCompile = estimate.isTooMuch();
    // Where comments begin and end isn't told exactly, so both readings have to be simple.
    if (ignoresBlanks)
        isTooComplexToCompile =
            isTooComplexToCompile || ComplexityEstimate(text, Blanks::SkippedWithComments).isTooMuch();
    else
        harmlessLineSize = estimate.harmlessLineSize();
}

} // namespace tidemark
