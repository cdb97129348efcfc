#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <algorithm>
#include <random>

namespace tidemark {

/// Random expressions of everything that the Perl syntax has, and lines that they are likely to match in.
class ExpressionGenerator
{
public:
    explicit ExpressionGenerator(unsigned seed) : _random(seed) {}

    unsigned below(unsigned limit) { return unsigned(_random() % limit); }

    QByteArray expression() { return (below(20) == 0 ? "(?i)" : "") + _choice(4); }

    QByteArray line()
    {
        QByteArray line;
        for (unsigned i = below(9); i > 0; --i)
            line += below(33) == 0
                        ? QByteArray(1, '\0')
                        : _oneOf("a~A~b~B~ab~s~K~aa~1~12~_~-~ ~\t~\v~\f~.~{2}~[~]~(~)~\\~é~ſ~\u212A~Я~😀~$~"
                                 "^~\x1B~:");
        return line;
    }

    QByteArray lineEnd() { return _oneOf("\n~\n~\r\n~\r"); }

private:
    /// Of texts between tildes; millions are asked for.
    QByteArray _oneOf(QByteArrayView pieces)
    {
        const auto count = std::count(pieces.begin(), pieces.end(), '~') + 1;
        for (unsigned skipped = below(unsigned(count)); skipped > 0; --skipped)
            pieces = pieces.sliced(pieces.indexOf('~') + 1);
        const qsizetype end = pieces.indexOf('~');
        return (end < 0 ? pieces : pieces.first(end)).toByteArray();
    }

    QByteArray _choice(unsigned depth)
    {
        QByteArray choice = _sequence(depth);
        for (unsigned i = below(5) == 0 ? 1 + below(2) : 0; i > 0; --i)
            choice += '|' + _sequence(depth);
        return choice;
    }

    QByteArray _sequence(unsigned depth)
    {
        QByteArray sequence;
        for (unsigned i = below(20) == 0 ? 0 : 1 + below(4); i > 0; --i)
            sequence += _atom(depth) + _repetition();
        return sequence;
    }

    QByteArray _atom(unsigned depth)
    {
        const unsigned kind = below(40);
        if (kind < 10 && depth > 0)
            return _group(depth - 1);
        if (kind < 15)
            return _set();
        if (kind < 20)
            return _escape();
        if (kind < 22)
            return _oneOf("^~$~\\b~\\B~\\<~\\>~\\A~\\z~\\Z~\\`~\\'~\\G");
        if (kind < 24)
            return _oneOf("\\1~\\2~\\g{1}~\\g{-1}~\\k<n>~\\k{n}~\\g1~\\k'n'");
        if (kind < 25)
            return _oneOf("\\Qa.b\\E~\\R~\\K~\\X~\\N~(?#c)~(*FAIL)~(?R)~(?1)~\\E~(?x)~(?(1)a|b)~(?P<n>a)~"
                          "(*ACCEPT)~(?&n)~\\y~\n~\r~(?-s)~(?m-i)");
        return _oneOf("a~b~A~s~k~ab~1~_~ ~.~.~-~]~}~{~{x~é~я~:~,~#~{a}~{,1}");
    }

    QByteArray _group(unsigned depth)
    {
        const QByteArray opening =
            _oneOf("(~(~(~(?:~(?:~(?|~(?>~(?<n>~(?'m'~(?=~(?!~(?<=~(?<!~(?i:~(?-i:~(?s-m:~(?i)(~(?-s:");
        return opening + _choice(depth) + ')';
    }

    QByteArray _repetition()
    {
        if (below(3) != 0)
            return {};
        return _oneOf("*~+~?~{2}~{1,}~{0,2}~{ 1 , 2 }~{0}~{2,3}~{+1}~{1,-1}~{1,x~{70}~{0,200}") +
               (below(4) == 0 ? _oneOf("?~+~?+") : QByteArray());
    }

    QByteArray _escape()
    {
        return _oneOf("\\w~\\W~\\d~\\D~\\s~\\S~\\l~\\L~\\u~\\U~\\h~\\H~\\v~\\V~\\C~\\a~\\e~\\f~\\n~\\r~\\t~"
                      "\\x61~\\xC3~\\x{61}~\\x{4a}~\\0~\\01~\\061~\\0613~\\cK~\\cl~\\.~\\\\~\\-~\\{~\\é~\\pL~"
                      "\\p{alpha}~\\P{upper}~\\p{space}~\\x6~\\x6g~\\ ~\\_~\\c[~\\x+1");
    }

    QByteArray _set()
    {
        QByteArray set = "[";
        if (below(3) == 0)
            set += '^';
        if (below(10) == 0)
            set += ']';
        for (unsigned i = 1 + below(3); i > 0; --i)
            set += _oneOf(
                "a~b~B~1~_~ ~a-b~A-Z~Y-a~0-9~+--~[:alpha:]~[:^digit:]~[:blank:]~[:unicode:]~[:w:]~[~[a~"
                "!-[~\\w~\\D~\\]~\\\\~\\b~\\v~\\x61-\\x63~\\n~[.a.]~[.ae.]~[=a=]~^~-~\\-~é~\\0~\\c]~"
                "\\cA~[:<:]~\\E~\\Qa~:]~\\e~.~\\L~!-[:alpha:]~a-[:x:");
        return set + ']';
    }

    std::minstd_rand _random;
};

} // namespace tidemark
