#include "matching/SearchContext.h"
#include "matching/TDFindResultItem.h"
#include "matching/TDMatchLineHighlighter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace tidemark;
using tidemark::test::TemporaryFolder;

namespace {

/// What the program has allocated and not freed; 0 where that can't be told.
qint64 bytesInUse()
{
#if defined(__GLIBC__) && !TIDEMARK_SANITIZED
    const struct mallinfo2 heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
#else
    return 0;
#endif
}

} // namespace

/// The million lines that a window can hold have to leave room for others.
TEST(MatchLineMemory, IsSmallBesideTheText)
{
    constexpr qint64 LINES = 200000;
    const QByteArray line = "    return value; // one of a great many\n";
    const TemporaryFolder folder;
    const FilePath path = folder.write("many", line.repeated(LINES));
    const TDFindPattern pattern(QStringLiteral("return"), FindOptions::withUserDefaults(CaseRule::Exact));
    const auto file = TDFindResultItem::initWithFile(path, {}, pattern.findText(), false);
    const qint64 before = bytesInUse();
    {
        SearchContext context(pattern);
        TDError error;
        TDMatchLineHighlighter highlighter;
        ASSERT_TRUE(highlighter.processWithFile(FileToRead{path}, TD_ENCODING_UTF8, error, context));
        ASSERT_EQ(highlighter.matchLines().size(), LINES);
        file->setMatches(highlighter.takeMatches());
        file->setMatchLines(TDFindResultItem::initWithMatchLines(file->matches()->lines, file.get()));
    }
    const qint64 forEachLine = (bytesInUse() - before) / LINES;
    RecordProperty("bytesForEachLine", int(forEachLine));
    if (forEachLine > 0)
        std::printf("%lld bytes for a line of %lld\n", (long long)forEachLine, (long long)line.size());
    EXPECT_LE(forEachLine - line.size(), 300);
}

/// Lines that leave the tree one by one, and in the other threads' time, take what they share with them.
TEST(MatchLineMemory, IsSharedByTheLinesThatAreLeft)
{
    FoundLines found;
    found.addLine(3, u"first \xFEFF one\n", {});
    found.addRange({0, 5});
    found.addLine(7, u"\xFEFFsecond \xD800\n", {});
    found.addRange({1, 3});
    found.addRange({4, 3});
    MatchLines lines = found.take();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(found.isEmpty() && found.take().isEmpty());
    const std::shared_ptr<TDMatchLine> kept = lines[1];
    EXPECT_EQ(lines[0]->matchLineString(), QStringLiteral("first \uFEFF one\n"));
    lines.clear();
    EXPECT_EQ(kept->matchLineString(), QStringLiteral("\uFEFFsecond \xD800\n"));
    EXPECT_EQ(kept->savedLineString(), kept->matchLineString());
    EXPECT_TRUE((kept->matchRanges() == QList<TextRange>{{1, 3}, {4, 3}}));
    kept->setMatchLineString(QStringLiteral("changed"));
    EXPECT_EQ(kept->savedLineString(), QStringLiteral("\uFEFFsecond \xD800\n"));
    EXPECT_EQ(kept->numberOfMatches(), 2U);
}
