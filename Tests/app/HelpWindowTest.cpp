#include "app/HelpWindow.h"

#include "app/TDApplicationController.h"
#include "replace/MatchLineReplacement.h"
#include "support/gui/WindowFixture.h"

#include <boost/regex.hpp>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTextDocumentFragment>

namespace tidemark::test {

namespace {

QString pageContent(const QString &language, const QString &topic)
{
    QFile page(u":/help/%1/%2.html"_s.arg(language, topic));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly)) << page.fileName().toStdString();
    return QString::fromUtf8(page.readAll());
}

/// The cells of each row of the table of that class, as they are shown.
QList<QStringList> tableRows(const QString &page, const QString &tableClass)
{
    const QString table = page.section(u"class=\"%1\">"_s.arg(tableClass), 1).section(u"</table>"_s, 0, 0);
    static const QRegularExpression cell(u"<td>(.*?)</td>"_s);
    QList<QStringList> rows;
    const QStringList lines = table.split(u"<tr>"_s, Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        QStringList cells;
        for (auto match = cell.globalMatch(line); match.hasNext();)
            cells << QTextDocumentFragment::fromHtml(match.next().captured(1))
                         .toPlainText()
                         .replace(QChar::Nbsp, u' ');
        if (!cells.isEmpty())
            rows << cells;
    }
    return rows;
}

class HelpWindowTest : public WindowTest
{
    HelpWindow _window; ///< brings the pages
};

TEST_F(HelpWindowTest, TheExamplesDoWhatIsSaid)
{
    const QList<QStringList> rows = tableRows(pageContent(u"en"_s, TD_HELP_FAQ_TOPIC), u"examples"_s);
    EXPECT_GE(rows.size(), 8);
    for (const QStringList &row : rows) {
        ASSERT_EQ(row.size(), 4);
        const boost::regex expression(row[0].toStdString(), boost::regex::perl | boost::regex::icase);
        EXPECT_EQ(boost::regex_replace(row[2].toStdString(), expression, row[1].toStdString()),
                  row[3].toStdString())
            << row[0].toStdString();
    }
}

TEST_F(HelpWindowTest, BothKindsOfExpressionsDoWhatIsSaid)
{
    const QList<QStringList> rows = tableRows(pageContent(u"en"_s, u"expressions"_s), u"kinds"_s);
    EXPECT_GE(rows.size(), 6);
    for (const QStringList &row : rows) {
        ASSERT_EQ(row.size(), 5);
        for (const auto &[mode, expected] :
             {std::pair(SearchMode::RegularExpression, row[3]), {SearchMode::UnicodeExpression, row[4]}}) {
            const FindOptions options = {mode, CaseRule::Ignore};
            const TDFindPattern pattern(row[0], options);
            TDFindPattern::Line search(pattern, row[2]);
            TDError error;
            TDMatchLine line;
            line.setMatchLineString(row[2]);
            for (TextRange found = search.nextMatch(error); found.isFound(); found = search.nextMatch(error))
                line.appendMatchRange(found);
            const TDReplacement replacement(row[0], row[1], options, ReplacementExtent::EveryOccurrence);
            replaceMatches(
                line, replacement, [] { return false; }, error);
            EXPECT_EQ(line.matchLineString(), expected) << row[0].toStdString();
        }
    }
}

TEST_F(HelpWindowTest, EveryErrorCodeIsExplained)
{
    QStringList explained;
    for (const QStringList &row : tableRows(pageContent(u"en"_s, TD_HELP_FAQ_TOPIC), u"errors"_s))
        explained << row.first();
    EXPECT_EQ(explained.join(u' '), u"1 2 3 4 25 26 27 28 29 30 31 32 33 34 35 36 37"_s);
}

TEST_F(HelpWindowTest, LinksLeadToPagesAndAnchorsThatExist)
{
    static const QRegularExpression link(u"href=\"([^\"#]*)\\.?(?:html)?#?([^\"]*)\""_s);
    for (QDirIterator pages(u":/help"_s, {u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
         pages.hasNext();) {
        const QString path = pages.next();
        const QString language = path.section(u'/', 2, 2);
        const QString content = pageContent(language, path.section(u'/', 3).chopped(5));
        for (auto match = link.globalMatch(content); match.hasNext();) {
            const QRegularExpressionMatch found = match.next();
            const QString target = found.captured(1).isEmpty()
                                       ? content
                                       : pageContent(language, found.captured(1).section(u'.', 0, 0));
            if (!found.captured(2).isEmpty()) {
                EXPECT_TRUE(target.contains(u"name=\"%1\""_s.arg(found.captured(2))))
                    << found.captured(0).toStdString();
            }
        }
    }
}

} // namespace

} // namespace tidemark::test
