#include "matching/TDFindPattern.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

QString found(const QString &find, SearchMode mode, const QString &line)
{
    const TDFindPattern pattern(find, {mode, CaseRule::Ignore, true});
    TDFindPattern::Line search(pattern, line);
    TDError error;
    QStringList ranges;
    for (TextRange range = search.nextMatch(error); range.isFound(); range = search.nextMatch(error))
        ranges << u"%1+%2"_s.arg(range.location).arg(range.length);
    return ranges.join(u' ');
}

TEST(WholeWords, AreNotTouchedByWordCharactersWhereTheyEndInOne)
{
    const struct
    {
        QString find;
        QString line;
        QString ranges;
        QString byBytes; ///< where an expression by bytes comes to something else
    } cases[] = {
        {u"tide"_s, u"tide tides, Tide untide tide_ tide2 (tide)"_s, u"0+4 12+4 37+4"_s, {}},
        {u"a-a"_s, u"xa-a-a"_s, u"3+3"_s, {}}, // what fails is passed over
        {u"-a"_s, u"b-a b-ab -a"_s, u"1+2 9+2"_s, {}},
        {u"-"_s, u"a-b"_s, u"1+1"_s, {}},
        {u"м"_s, u"мир м 😀м"_s, u"4+1 8+1"_s, u"7+2 14+2"_s},
        {u"e"_s, u"e\u0301 e"_s, u"3+1"_s, u"4+1"_s},
        {u"न"_s, u"न् न"_s, u"3+1"_s, u"7+3"_s},
        {u"a"_s, u"éa aé a"_s, u"6+1"_s, u"8+1"_s},
        {u"tide"_s, u"tides"_s, u""_s, {}},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(found(test.find, SearchMode::PlainText, test.line), test.ranges) << test.line.toStdString();
        EXPECT_EQ(found(test.find, SearchMode::UnicodeExpression, test.line), test.ranges)
            << test.line.toStdString();
        // The range that is searched counts characters, so the end of such a line isn't.
        const QString padded = test.line + QString(test.byBytes.isNull() ? 0 : 20, u'.');
        EXPECT_EQ(found(test.find, SearchMode::RegularExpression, padded),
                  test.byBytes.isNull() ? test.ranges : test.byBytes)
            << test.line.toStdString();
    }
    EXPECT_EQ(found(u"o*"_s, SearchMode::UnicodeExpression, u"foo o"_s), u"0+0 3+0 4+1 5+0"_s);
    EXPECT_EQ(found(u"\\w+?"_s, SearchMode::UnicodeExpression, u"ab c"_s), u"3+1"_s);
}

} // namespace
} // namespace tidemark::test
