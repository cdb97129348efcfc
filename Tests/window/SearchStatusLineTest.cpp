#include "window/SearchStatusLine.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark {

namespace {

struct Case
{
    quint64 matches;
    quint64 files;
    quint64 scanned;
    const char *finished;
};

TEST(SearchStatusLine, CountsAreInTheSingularOrPluralAsTheTextsWantIt)
{
    const Case cases[] = {
        {0, 0, 0, "Search completed (0 matches found in 0 files • 0 files searched)"},
        {0, 1, 1, "Search completed (0 matches found in 1 files • 1 file searched)"},
        {1, 1, 1, "Search completed (1 match found in 1 file • 1 file searched)"},
        {1, 2, 2, "Search completed (1 matches found in 2 files • 2 files searched)"},
        {3, 1, 12, "Search completed (3 matches found in 1 file • 12 files searched)"},
        {38, 4, 120, "Search completed (38 matches found in 4 files • 120 files searched)"},
        {quint64(-1), 1, 2,
         "Search completed (18446744073709551615 matches found in 1 file • 2 files searched)"},
    };
    for (const Case &expected : cases)
        EXPECT_EQ(finishedStatus(expected.matches, expected.files, expected.scanned, SearchEnd::Completed),
                  QString::fromUtf8(expected.finished));
    EXPECT_EQ(finishedStatus(1, 1, 5, SearchEnd::Interrupted),
              QStringLiteral("Search interrupted (1 match found in 1 file • 5 files searched)"));
}

TEST(SearchStatusLine, APathWithPlaceholdersIsShownAsItIs)
{
    EXPECT_EQ(scanningStatus(2, 1, 1, FilePath("/tmp/%d of %@")),
              QStringLiteral("2 matches found in 1 file • 1 file searched • Searching: /tmp/%d of %@"));
}

} // namespace

} // namespace tidemark
