#include "session/SearchStatusLine.h"
#include "support/Testing.h"

#include <QLocale>

namespace tidemark::test {

namespace {

TEST(SearchStatusLine, CountsAreInTheSingularOrPluralAsTheTextsWantIt)
{
    const std::tuple<quint64, quint64, quint64, const char *> cases[] = {
        {0, 0, 0, "0 matches found in 0 files • 0 files searched"},
        {0, 1, 1, "0 matches found in 1 files • 1 file searched"},
        {1, 1, 1, "1 match found in 1 file • 1 file searched"},
        {1, 2, 2, "1 matches found in 2 files • 2 files searched"},
        {3, 1, 12, "3 matches found in 1 file • 12 files searched"},
        {38, 4, 120, "38 matches found in 4 files • 120 files searched"},
        {quint64(-1), 1, 2, "18,446,744,073,709,551,615 matches found in 1 file • 2 files searched"},
    };
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    for (const auto &[matches, files, scanned, text] : cases) {
        const QString counts = QString::fromUtf8(text);
        EXPECT_EQ(finishedStatus(matches, files, scanned, SearchEnd::Completed),
                  QStringLiteral("Search completed (%1)").arg(counts));
        EXPECT_EQ(finishedStatus(matches, files, scanned, SearchEnd::Interrupted),
                  QStringLiteral("Search interrupted (%1)").arg(counts));
    }
    QLocale::setDefault(before);
    // Placeholders in a path are shown as they are.
    EXPECT_EQ(scanningStatus(2, 1, 1, FilePath("/tmp/%d of %@")),
              QStringLiteral("2 matches found in 1 file • 1 file searched • Searching: /tmp/%d of %@"));
}

} // namespace

} // namespace tidemark::test
