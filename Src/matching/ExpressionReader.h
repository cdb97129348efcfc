#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tidemark {

/// What Perl's syntax takes for blank.
inline constexpr std::string_view SPACES = " \t\n\v\f\r";

inline bool isOneOf(char c, std::string_view characters)
{
    return characters.find(c) != std::string_view::npos;
}

/// One piece of an expression in Perl's syntax.
struct ExpressionToken
{
    enum class Kind : std::uint8_t {
        Literal, ///< a byte that stands for itself
        Blank,   ///< a byte that is passed over, or a comment to the end of its line
        AnyCharacter,
        LineStart,
        LineEnd,
        Alternative,
        Repetition, ///< what makes it lazy or possessive isn't part of it
        Escape,     ///< whole where it is well formed, otherwise the backslash and the byte behind it
        Quotation,  ///< `\Q...\E`
        Set,
        GroupStart, ///< up to where the group's content begins
        GroupEnd,
        Flags, ///< `(?i)`
        Call,  ///< and whatever else begins with `(?` and holds no content
        Comment,
        Verb,          ///< `(*...)`
        ClassName,     ///< in a set: `[:alpha:]`
        CollatingName, ///< in a set: `[.a.]`, `[=a=]`
    };
    enum class Group : std::uint8_t {
        Capturing,
        Plain,
        BranchReset,
        Atomic,
        Named,
        LookAhead,
        LookBehind,
        WithFlags,
        Conditional, ///< with its condition, if that isn't an assertion, which follows as a group
        Unknown,
    };

    Kind kind = Kind::Literal;
    Group group = Group::Capturing; ///< of a GroupStart
    std::string_view text;

    char first() const { return text.front(); }
    /// Of an escape: the byte behind the backslash; 0 where the expression ends there.
    char escaped() const { return text.size() > 1 ? text[1] : '\0'; }
};

/// Takes an expression in Perl's syntax apart, as far as that is the same for all libraries; any sequence of
/// bytes can be read. What isn't finished reaches to the expression's end. Views are of the expression.
class ExpressionReader
{
public:
    enum class Blanks { Kept, Skipped, SkippedWithComments };

    explicit ExpressionReader(std::string_view expression, Blanks blanks = Blanks::Kept)
        : _expression(expression), _blanks(blanks)
    {}

    bool isAtEnd() const { return _position == _expression.size(); }
    std::string_view rest() const { return _expression.substr(_position); }
    /// Whether the next byte is one of these.
    bool isNextOneOf(std::string_view bytes) const
    {
        return !isAtEnd() && bytes.find(_expression[_position]) != std::string_view::npos;
    }

    /// Not to be asked at the end.
    ExpressionToken next();
    bool takeIf(std::string_view text);
    /// Nothing where blanks are kept.
    void skipBlanks();

    /// What stands in a set that isn't closed, or up to the bracket that closes it, without the circumflex
    /// that inverts it.
    struct SetContent
    {
        std::vector<ExpressionToken> items;
        bool isClosed = false;
    };
    static SetContent contentOf(const ExpressionToken &set);

private:
    using Kind = ExpressionToken::Kind;
    using Group = ExpressionToken::Group;

    Kind _read();
    Kind _readEscape();
    void _skipEscape();
    Kind _readBrace();
    Kind _readHash();
    Kind _readGroup(Group &group);
    Kind _readSpecialGroup(Group &group);
    Kind _readFlagsOrName(Group &group);
    Group _readConditional();
    Kind _readSetItem();
    void _skipSet();
    bool _skipPast(std::string_view end);
    bool _isBlank() const;

    std::string_view _expression;
    Blanks _blanks;
    size_t _position = 0;
};

/// Whether a group like `(?i)` or `(?-i:` may occur with the flag; it doesn't matter when there are fewer
/// than it seems.
bool mayChangeFlag(std::string_view expression, char flag);

} // namespace tidemark
