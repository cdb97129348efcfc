#pragma once

#include "text/TextRange.h"

#include <QByteArrayList>
#include <QList>
#include <QProcess>
#include <QString>

#include <random>
#include <utility>

namespace tidemark::test {

using namespace Qt::Literals::StringLiterals;

/// What the library takes for a word is letters, numbers and the underscore; Perl counts marks and more.
inline const QString WORD = u"[\\p{L}\\p{N}_]"_s;
inline const QString EDGE = u"(?:(?<=%1)(?!%1)|(?<!%1)(?=%1))"_s.arg(WORD);

/// An expression, for the library and for Perl.
struct Expression
{
    QString own;
    QString perl;

    Expression &operator+=(const Expression &other)
    {
        own += other.own;
        perl += other.perl;
        return *this;
    }
    Expression &operator+=(const QString &text) { return *this += Expression{text, text}; }
};

class CaseMaker
{
public:
    explicit CaseMaker(unsigned seed) : _random(seed) {}

    QString line()
    {
        static const QStringList PIECES =
            u"tide|Tide|é|É|ñandú|x1|_|42|ΣΊΣΥΦΟΣ|σίσυφος|Привет|МИР|мир|שלום|שָׁלוֹם|سلام|مرحبا|हिन्दी|नमस्ते|"
            u"สวัสดี|น้ำ|漢字|"
            u"日本語|ひらがな|カタカナ|한국어|가각|😀|👨‍👩‍👧|🏳️‍🌈|e\u0301|\u0301|a\u0308\u0323| |, |-|.|\t|aa|ab|ba"_s
                .split(u'|');
        QString line;
        for (int count = below(8); count > 0; --count)
            line += PIECES[below(int(PIECES.size()))];
        return line;
    }

    Expression expression()
    {
        _groups = 0;
        _closedGroups.clear();
        return _choice(3);
    }

    QString format(int groups)
    {
        QStringList pieces =
            u"$&|$`|$'|$$|<|>|é|漢😀|\\n|\\t|\\x{1F600}|\\\\|\\E|x |\\u|\\l|\\U|\\L"_s.split(u'|');
        if (groups > 0)
            pieces << u"$1"_s << u"${1}"_s << u"$+"_s << u"$+{n1}"_s << u"$%1"_s.arg(groups);
        QString format;
        bool changesNext = false;
        for (int count = below(6); count > 0; --count) {
            const QString piece = pieces[below(int(pieces.size()))];
            // Perl nests what is open where several follow each other.
            const bool isCase = piece.size() == 2 && piece[0] == u'\\' && u"ulULE"_s.contains(piece[1]);
            if (isCase && std::exchange(changesNext, true))
                continue;
            format += piece;
        }
        return format;
    }

    int groups() const { return _groups; }
    int below(int limit) { return int(_random() % unsigned(limit)); }

private:
    Expression _choice(int depth)
    {
        Expression choice = _sequence(depth);
        for (int count = below(4) == 0 ? 1 + below(2) : 0; count > 0; --count) {
            choice += u"|"_s;
            choice += _sequence(depth);
        }
        return choice;
    }

    Expression _sequence(int depth)
    {
        Expression sequence;
        for (int count = below(20) == 0 ? 0 : 1 + below(3); count > 0; --count) {
            const int kind = below(24);
            if (kind < 4) {
                sequence += _assertion(depth);
                continue;
            }
            const int groupsBefore = _groups;
            sequence += kind < 8 && depth > 0 ? _group(depth - 1) : _atom();
            // What a group keeps from earlier rounds of a repetition differs.
            if (_groups == groupsBefore)
                sequence += _oneOf(u"||||||*|+|?|{1,2}|{2}|*?|+?|??|++|?+|*+"_s);
        }
        return sequence;
    }

    Expression _assertion(int depth)
    {
        const int kind = below(9);
        if (kind == 0)
            return {u"\\b"_s, EDGE};
        if (kind == 1)
            return {u"\\B"_s, u"(?!%1)"_s.arg(EDGE)};
        if (kind < 5)
            return same(_oneOf(u"^|$|\\A|\\z"_s));
        Expression look = same(_oneOf(u"(?=|(?!|(?<=|(?<!"_s));
        const bool looksBehind = look.own.contains(u'<');
        // Behind, only what has a length of its own.
        const QList<int> closedGroups = _closedGroups;
        if (looksBehind)
            _closedGroups.clear();
        look += looksBehind || depth == 0 ? _atom() : _sequence(0);
        _closedGroups = closedGroups;
        look += u")"_s;
        return look;
    }

    Expression _group(int depth)
    {
        const int kind = below(6);
        int number = 0;
        Expression group = same(kind == 0 ? u"(?:"_s : kind == 1 ? u"(?>"_s : kind == 2 ? u"(?i:"_s : u"("_s);
        if (kind > 2) {
            number = ++_groups;
            // The first one has the name that formats use.
            if (_groups == 1 || kind == 3)
                group = same(u"(?<n%1>"_s.arg(_groups));
        }
        group += _choice(depth);
        group += u")"_s;
        if (number > 0)
            _closedGroups << number;
        return group;
    }

    Expression _atom()
    {
        const int kind = below(12);
        if (kind == 0 && !_closedGroups.isEmpty())
            return same(u"\\g{%1}"_s.arg(_closedGroups[below(int(_closedGroups.size()))]));
        if (kind == 1)
            return {u"\\w"_s, WORD};
        if (kind == 2)
            return {u"\\W"_s, u"[^\\p{L}\\p{N}_]"_s};
        // In Perl these match letters of either case where case is ignored.
        if (kind == 3)
            return below(2) == 0 ? Expression{u"\\p{Lu}"_s, u"(?-i:\\p{Lu})"_s}
                                 : Expression{u"\\p{Ll}"_s, u"(?-i:\\p{Ll})"_s};
        if (kind < 8)
            return same(_oneOf(u".|\\d|\\s|\\S|\\p{L}|\\P{L}|\\p{M}|\\p{Han}|\\p{Greek}|"
                               u"\\p{Cyrillic}|\\p{Hebrew}|\\p{Thai}|\\p{Devanagari}|[а-я]|[a-é]|[^a-z]|"
                               u"[ΐ-ώ]|[ぁ-ん漢]|[\\p{Arabic}\\d]|[^\\s\\p{L}]|\\N|\\h"_s));
        return same(
            _oneOf(u"a|b|ab|é|É|ñ|σ|Σ|ς|м|М|и|ש|ם|ل|न|ि|ส|้|漢|字|か|カ|한|가|😀|\u200D|\u0301|x|1|_| |-"_s));
    }

    static Expression same(const QString &text) { return {text, text}; }
    QString _oneOf(const QString &texts)
    {
        const QStringList all = texts.split(u'|');
        return all[below(int(all.size()))];
    }

    std::minstd_rand _random;
    int _groups = 0;
    QList<int> _closedGroups;
};

inline QByteArray hex(const QString &text)
{
    return text.toUtf8().toHex();
}

/// Perl itself, asked for one line after the other.
class Perl
{
public:
    struct Match
    {
        TextRange range;
        QString replacement;
        friend bool operator==(const Match &, const Match &) = default;
    };
    struct Answer
    {
        bool isMalformed = false;
        QList<Match> matches;
    };

    Perl() { _process.start(u"perl"_s, {QStringLiteral(TIDEMARK_TEST_DATA "/perl-oracle.pl")}); }
    ~Perl()
    {
        _process.closeWriteChannel();
        _process.waitForFinished();
    }

    bool isThere() { return _process.waitForStarted(); }

    Answer ask(bool ignoresCase, const QString &expression, const QString &format, const QString &line)
    {
        // Perl 5.36 passes over some matches that begin with a repeated character, but for what stands
        // before.
        const QString asked = u"(?!\\x{10FFFD})(?:"_s + expression + u')';
        _process.write((ignoresCase ? "1\t" : "0\t") + hex(asked) + '\t' + hex(format) + '\t' + hex(line) +
                       '\n');
        while (!_process.canReadLine() && _process.waitForReadyRead(30'000)) {
        }
        return _answerOf(_process.readLine().trimmed());
    }

private:
    /// Of each match `location+length=replacement`, the last in hexadecimal.
    static Answer _answerOf(const QByteArray &text)
    {
        if (text == "malformed")
            return {true, {}};
        Answer answer;
        for (const QByteArray &match : text.isEmpty() ? QByteArrayList() : text.split(',')) {
            const qsizetype plus = match.indexOf('+');
            const qsizetype equals = match.indexOf('=');
            answer.matches << Match{
                {match.left(plus).toLongLong(), match.mid(plus + 1, equals - plus - 1).toLongLong()},
                QString::fromUtf8(QByteArray::fromHex(match.mid(equals + 1)))};
        }
        return answer;
    }

    QProcess _process;
};

/// The line with its matches replaced from the first to before the last of these.
inline QString replacedBy(const QString &line, const QList<Perl::Match> &matches, qsizetype first,
                          qsizetype last)
{
    QString replaced;
    qint64 copied = 0;
    for (qsizetype index = first; index < last; ++index) {
        const Perl::Match &match = matches[index];
        replaced += line.sliced(copied, match.range.location - copied) + match.replacement;
        copied = match.range.end();
    }
    return replaced + line.sliced(copied);
}

/// As many random cases as ./test has time for, or as the environment says.
inline int oracleCases()
{
    bool isGiven = false;
    const int cases = qEnvironmentVariableIntValue("TIDEMARK_ORACLE_CASES", &isGiven);
    return isGiven ? cases : 300;
}

} // namespace tidemark::test
