#include "matching/ExpressionComplexity.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace tidemark {

namespace {

/// As a power of two: a few thousand ways for each of the expression's states.
constexpr double MOST_WAYS = 12;
/// Of each, one may lie on the stack for every other one.
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
    ComplexityEstimate(std::string_view expression, bool ignoresBlanks, bool skipsComments)
        : _expression(expression), _ignoresBlanks(ignoresBlanks), _skipsComments(skipsComments)
    {
        while (_position < _expression.size())
            _readNext(_expression[_position++]);
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
    void _readNext(char c);
    void _readEscape();
    void _repeat(char c);
    bool _skipBounds();
    void _skipBlanks();
    void _beginGroup();
    void _beginSpecialGroup();
    void _beginConditional();
    void _endGroup();
    void _endAlternative();
    void _addWays();
    void _skipSet();
    void _skipPast(std::string_view end);
    bool _takeIf(std::string_view text);
    void _notEmpty() { _groups.back().isEmptySoFar = false; }
    void _push(bool isLookAround, bool isLookedBehind);

    std::string_view _expression;
    bool _ignoresBlanks;
    bool _skipsComments;
    size_t _position = 0;
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

void ComplexityEstimate::_readNext(char c)
{
    if (c == '*' || c == '+' || c == '?' || (c == '{' && _skipBounds()))
        return _repeat(c);
    _hasLastChoices = false;
    switch (c) {
    case '\\':
        return _readEscape();
    case '[':
        return _skipSet();
    case '(':
        return _beginGroup();
    case ')':
        return _groups.size() > 1 ? _endGroup() : _notEmpty();
    case '|':
        _endAlternative();
        ++_groups.back().alternatives;
        return;
    case '$':
        ++_depth;
        return;
    case '^':
        return;
    case '#':
        return _skipsComments ? _skipPast("\n") : _notEmpty();
    default:
        if (!_ignoresBlanks || c > ' ')
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
    _skipBlanks();
    _takeIf("?");
    if (!_takeIf("+"))
        return;
    // Behind a possessive repetition and a comment the library's compiler runs in circles.
    _skipBlanks();
    _hangs = _hangs || _expression.substr(_position).starts_with("(?#");
}

/// Behind the brace. False, with nothing skipped, where it is literal.
bool ComplexityEstimate::_skipBounds()
{
    const size_t end = _expression.find_first_not_of("0123456789,+- \t\n\v\f\r", _position);
    if (end == _position || end == std::string_view::npos || _expression[end] != '}')
        return false;
    _position = end + 1;
    return true;
}

void ComplexityEstimate::_skipBlanks()
{
    while (_ignoresBlanks && _position < _expression.size() && _expression[_position] > 0 &&
           _expression[_position] <= ' ')
        ++_position;
}

void ComplexityEstimate::_readEscape()
{
    if (_position == _expression.size())
        return;
    const char c = _expression[_position++];
    if (c == '<' || c == '>')
        ++_depth;
    if ((c >= '1' && c <= '9') || c == 'g' || c == 'k' || c == 'R' || c == 'X')
        ++_repetitions;
    if (c == 'Q') {
        const size_t start = _position;
        _skipPast("\\E");
        if (_position > start + 2)
            _notEmpty();
    } else if (std::string_view("EbB<>AzZ`'GK").find(c) == std::string_view::npos) {
        _notEmpty();
    }
}

void ComplexityEstimate::_beginGroup()
{
    ++_depth;
    if (_takeIf("?"))
        return _beginSpecialGroup();
    if (_takeIf("*"))
        return _skipPast(")");
    _push(false, false);
}

/// Behind the question mark.
void ComplexityEstimate::_beginSpecialGroup()
{
    if (_takeIf("#"))
        return _skipPast(")");
    if (_takeIf("<=") || _takeIf("<!")) {
        if (!_groups.back().isLookedBehind)
            _waysBehind = 0;
        return _push(true, true);
    }
    if (_takeIf("=") || _takeIf("!"))
        return _push(true, false);
    if (_takeIf("("))
        return _beginConditional();
    const size_t start = _position;
    while (_position < _expression.size() &&
           std::string_view("imsx-").find(_expression[_position]) != std::string_view::npos)
        ++_position;
    if (_position > start && _takeIf(")"))
        return;
    const size_t word = _position;
    while (_position < _expression.size() &&
           std::string_view(":)|>(['\\").find(_expression[_position]) == std::string_view::npos)
        ++_position;
    if (_takeIf(")")) {
        _isUnbounded = true;
        return;
    }
    const bool isNamed = word < _expression.size() && _expression[word] == '<';
    if (isNamed || (_position == word && _takeIf("'")))
        _skipPast(isNamed ? ">" : "'");
    else if (!_takeIf(":") && !_takeIf("|"))
        _takeIf(">");
    _push(false, false);
}

/// Behind the second parenthesis.
void ComplexityEstimate::_beginConditional()
{
    _push(false, false);
    if (_position < _expression.size() && _expression[_position] == '?')
        --_position; // an assertion like any other
    else
        _skipPast(")");
}

void ComplexityEstimate::_push(bool isLookAround, bool isLookedBehind)
{
    Group group;
    group.isLookAround = isLookAround;
    group.isLookedBehind = isLookedBehind || _groups.back().isLookedBehind;
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

/// Behind the opening bracket.
void ComplexityEstimate::_skipSet()
{
    _notEmpty();
    _takeIf("^");
    _takeIf("]");
    while (_position < _expression.size()) {
        const char c = _expression[_position++];
        if (c == ']')
            return;
        if (c == '\\' && _position < _expression.size())
            ++_position;
        else if (c == '[' && _takeIf(":"))
            _skipPast(":]");
        else if (c == '[' && _takeIf("."))
            _skipPast(".]");
        else if (c == '[' && _takeIf("="))
            _skipPast("=]");
    }
}

void ComplexityEstimate::_skipPast(std::string_view end)
{
    const size_t found = _expression.find(end, _position);
    _position = found == std::string_view::npos ? _expression.size() : found + end.size();
}

bool ComplexityEstimate::_takeIf(std::string_view text)
{
    if (!_expression.substr(_position).starts_with(text))
        return false;
    _position += text.size();
    return true;
}

/// Whether a group like `(?x)` or `(?i-x:` may occur.
bool mayIgnoreBlanks(std::string_view expression)
{
    for (size_t i = expression.find("(?"); i != std::string_view::npos; i = expression.find("(?", i + 1)) {
        const std::string_view rest = expression.substr(i + 2);
        if (rest.substr(0, rest.find_first_not_of("imsx-")).find('x') != std::string_view::npos)
            return true;
    }
    return false;
}

} // namespace

ExpressionComplexity::ExpressionComplexity(QByteArrayView expression)
{
    const std::string_view text(expression.data(), size_t(expression.size()));
    const bool ignoresBlanks = mayIgnoreBlanks(text);
    const ComplexityEstimate estimate(text, ignoresBlanks, false);
    isTooComplexToCompile = estimate.isTooMuch();
    // Where comments begin and end isn't looked at closely: both readings have to be simple.
    if (ignoresBlanks)
        isTooComplexToCompile = isTooComplexToCompile || ComplexityEstimate(text, true, true).isTooMuch();
    else
        harmlessLineSize = estimate.harmlessLineSize();
}

} // namespace tidemark
