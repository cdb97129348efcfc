#pragma once

#include <QString>
#include <QVarLengthArray>

#include <string_view>
#include <vector>

namespace tidemark {

/// A file name prepared for any number of patterns: its code points, composed, so that a name matches in
/// whichever normal form the file system keeps it. Bytes that aren't UTF-8 count as one character each.
class WildcardSubject
{
public:
    explicit WildcardSubject(std::string_view fileName);
    explicit WildcardSubject(const QString &name);

    const QVarLengthArray<char32_t, 256> &characters() const { return _characters; }

private:
    void _setText(const QString &text);

    QVarLengthArray<char32_t, 256> _characters;
};

/// `*`, `?` and `[...]` (with ranges, and negation by ! or ^) over the whole name, without regard to case.
/// A `]` directly behind the opening or the negation is a member; a `[` that nothing closes is a plain
/// character.
class WildcardPattern
{
public:
    explicit WildcardPattern(const QString &pattern);

    bool matches(const WildcardSubject &subject) const;

private:
    struct Range
    {
        char32_t first;
        char32_t last;
    };
    struct Element
    {
        enum class Kind { Character, Any, AnySequence, Set };

        bool accepts(char32_t candidate) const;

        Kind kind = Kind::Character;
        char32_t character = 0;
        bool negated = false;
        std::vector<Range> ranges;
    };
    static bool _parseSet(const QList<uint> &pattern, qsizetype &position, Element &element);

    std::vector<Element> _elements;
};

} // namespace tidemark
