#include "session/FileContext.h"

#include "session/ContextMatches.h"
#include "support/Events.h"
#include "support/ResultNodes.h"
#include "support/Testing.h"

#include <QSignalSpy>

namespace tidemark::test {

namespace {

bool waitUntilRead(const FileContext &context)
{
    return waitFor([&] { return !context.isOpening() && context.isLookedThrough(); });
}

TEST(FileContext, GivesTheLinesAskedForAndNoticesAChange)
{
    const TemporaryFolder folder;
    const FilePath path = folder.write("a.txt", QByteArray("line\n").repeated(500000) + "last");
    FileContext context;
    context.open(path, TD_ENCODING_UTF8);
    context.want(500000, 5);
    ASSERT_TRUE(waitFor([&] { return context.line(500001) != nullptr; }));
    EXPECT_EQ(context.line(500001)->text, u"last"_s);
    EXPECT_EQ(context.line(1), nullptr);
    EXPECT_EQ(context.lineCount(), 500001);

    std::optional<QStringList> fetched;
    context.fetch(499999, 500009, [&](const std::optional<QStringList> &lines) { fetched = lines; });
    ASSERT_TRUE(waitFor([&] { return fetched.has_value(); }));
    EXPECT_EQ(fetched->join(u'|'), u"line|line|last"_s);

    writeFile(path, "other\n");
    setModificationDate(path, 1000000000);
    context.open(path, TD_ENCODING_UTF8);
    ASSERT_TRUE(waitUntilRead(context));
    EXPECT_EQ(context.line(500001), nullptr);
    context.want(1, 1);
    ASSERT_TRUE(waitFor([&] { return context.line(1) != nullptr; }));
    EXPECT_EQ(context.line(1)->text, u"other"_s);

    // What is as it was isn't read again.
    const QSignalSpy opened(&context, &FileContext::opened);
    context.open(path, TD_ENCODING_UTF8);
    ASSERT_TRUE(waitUntilRead(context));
    EXPECT_EQ(opened.count(), 0);
    ASSERT_TRUE(QFile::remove(path.displayText()));
    context.open(path, TD_ENCODING_UTF8);
    ASSERT_TRUE(waitFor([&] { return bool(context.error()); }));
}

struct MatchCase
{
    const char *name;
    void (*change)(TDMatchLine &line);
    qint64 number;
    QString text;
    QString expected; ///< each range, with ! where it is highlighted and = where it is replaced
};

TEST(ContextMatches, AreMarkedWhereTheFileReadsAsItIsListed)
{
    const MatchCase cases[] = {
        {"as found", [](TDMatchLine &line) { line.setHighlightedMatchIndex(1); }, 2, u"a foo foo"_s,
         u"2+3 6+3!"_s},
        {"other line", [](TDMatchLine &) {}, 3, u"a foo foo"_s, {}},
        {"changed in the file", [](TDMatchLine &) {}, 2, u"a foo  foo"_s, {}},
        {"replaced and saved",
         [](TDMatchLine &line) {
             line.setMatchLineString(u"a x foo\n"_s);
             line.setMatchRanges({{2, 1}, {4, 3}});
             line.setReplaced(0);
             line.setSavedLineString(line.matchLineString());
         },
         2, u"a x foo"_s, u"2+1= 4+3"_s},
        {"became two lines",
         [](TDMatchLine &line) {
             line.setMatchLineString(u"a x\r\ny foo\n"_s);
             line.setMatchRanges({{2, 4}, {7, 3}});
             line.setSavedLineString(line.matchLineString());
         },
         3, u"y foo"_s, u"0+1 2+3"_s},
    };
    for (const MatchCase &matchCase : cases) {
        const auto file = fileNode("/a.txt", {u"nothing\n"_s, u"a foo foo\n"_s});
        TDMatchLine &line = *file->children()[1]->matchLine();
        line.setSavedLineString(line.matchLineString());
        matchCase.change(line);
        QStringList ranges;
        for (const ContextMatch &match : contextMatches(*file, matchCase.number, matchCase.text, nullptr))
            ranges << u"%1+%2%3%4"_s.arg(match.range.location)
                          .arg(match.range.length)
                          .arg(match.isHighlighted ? u"!"_s : QString(),
                               match.isReplaced ? u"="_s : QString());
        EXPECT_EQ(ranges.join(u' '), matchCase.expected) << matchCase.name;
    }
}

} // namespace

} // namespace tidemark::test
