#include "app/HelpWindow.h"

#include "LanguageInstaller.h"
#include "TextTable.h"
#include "app/TDApplicationController.h"
#include "replace/MatchLineReplacement.h"
#include "support/gui/WindowFixture.h"

#include <boost/regex.hpp>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
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

QStringList pagesOf(const QString &language)
{
    return QDir(u":/help/"_s + language).entryList({u"*.html"_s}, QDir::Files, QDir::Name);
}

/// What the expression's group holds, wherever it matches in the page, as it is shown.
QStringList allOf(const QRegularExpression &expression, const QString &page)
{
    QStringList found;
    for (auto match = expression.globalMatch(page); match.hasNext();)
        found << QTextDocumentFragment::fromHtml(match.next().captured(1)).toPlainText().simplified();
    return found;
}

QStringList anchorsIn(const QString &page)
{
    static const QRegularExpression anchor(u"name=\"(.*?)\""_s);
    return allOf(anchor, page);
}

/// Pages put in <b> what the program calls something, and nothing else.
QSet<QString> namesIn(const QString &page)
{
    static const QRegularExpression name(u"<b>(.*?)</b>"_s, QRegularExpression::DotMatchesEverythingOption);
    const QStringList names = allOf(name, page);
    return {names.begin(), names.end()};
}

/// For each text that English shows, what the language shows in its place.
QMultiMap<QString, QString> shownTexts(const QString &language)
{
    const QMap<QString, QString> english = textTableOf(u"en"_s);
    const QMap<QString, QString> all = textTableOf(u"de"_s);
    const QMap<QString, QString> table = textTableOf(language);
    QMultiMap<QString, QString> shown;
    for (const QString &key : all.keys()) {
        const QString inEnglish = english.value(key, key);
        shown.insert(QString(inEnglish).remove(u'&').simplified(),
                     table.value(key, inEnglish).remove(u'&').simplified());
    }
    return shown;
}

class HelpWindowTest : public WindowTest
{
    HelpWindow _window; ///< brings the pages
};

class HelpBook : public HelpWindowTest, public testing::WithParamInterface<const char *>
{
protected:
    QString content(const QString &page) const { return pageContent(language, page.section(u'.', 0, 0)); }

    const QString language = QString::fromLatin1(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Languages, HelpBook, testing::Values("en", "de", "fr"),
                         [](const auto &language) { return std::string(language.param); });

TEST_P(HelpBook, HasThePagesAnchorsAndExamplesOfTheEnglishOne)
{
    const QStringList pages = pagesOf(u"en"_s);
    EXPECT_EQ(pagesOf(language), pages);
    for (const QString &page : pages) {
        SCOPED_TRACE(page.toStdString());
        const QString english = pageContent(u"en"_s, page.section(u'.', 0, 0));
        EXPECT_EQ(anchorsIn(content(page)), anchorsIn(english));
        for (const QString &examples : {u"examples"_s, u"kinds"_s})
            EXPECT_EQ(tableRows(content(page), examples), tableRows(english, examples));
    }
}

TEST_P(HelpBook, CallsThingsWhatTheProgramCallsThem)
{
    const QMultiMap<QString, QString> shown = shownTexts(language);
    for (const QString &page : pagesOf(u"en"_s)) {
        SCOPED_TRACE(page.toStdString());
        const QSet<QString> names = namesIn(content(page));
        QSet<QString> expected;
        for (const QString &name : namesIn(pageContent(u"en"_s, page.section(u'.', 0, 0)))) {
            const QStringList texts = shown.values(name);
            EXPECT_TRUE(names.intersects({texts.begin(), texts.end()})) << "missing: " << name.toStdString();
            expected.unite({texts.begin(), texts.end()});
        }
        EXPECT_EQ((names - expected).values(), QStringList()) << "no such text, or not on the English page";
    }
}

TEST_P(HelpBook, OpensInTheLanguageOfTheTexts)
{
    const LanguageInstaller installed(language);
    HelpWindow window;
    window.showTopic(TD_HELP_OVERVIEW_TOPIC);
    EXPECT_EQ(window.source(), QUrl(u"qrc:/help/%1/index.html"_s.arg(language)));
    window.setSource(QUrl(u"results.html#copy"_s));
    EXPECT_EQ(window.source(), QUrl(u"qrc:/help/%1/results.html#copy"_s.arg(language)));
    EXPECT_FALSE(window.document()->isEmpty());
}

TEST_F(HelpWindowTest, APageThatALanguageLacksOpensInEnglish)
{
    HelpWindow window;
    window.setSource(QUrl(u"qrc:/help/it/index.html"_s));
    EXPECT_EQ(window.source(), QUrl(u"qrc:/help/en/index.html"_s));
    window.setSource(QUrl(u"../it/results.html#copy"_s));
    EXPECT_EQ(window.source(), QUrl(u"qrc:/help/en/results.html#copy"_s));
}

TEST_F(HelpWindowTest, FindsInTheWholeBookOnceRound)
{
    HelpWindow window;
    window.showTopic(u"results"_s);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto place = [&window] {
        return u"%1 %2 %3"_s.arg(window.source().fileName(), window.textCursor().selectedText())
            .arg(window.textCursor().selectionStart());
    };
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    QWidget *field = QApplication::focusWidget();
    ASSERT_TRUE(qobject_cast<QLineEdit *>(field));
    QTest::keyClicks(field, u"markdown"_s);
    QStringList places = {place()};
    EXPECT_TRUE(places.first().startsWith(u"results.html Markdown"_s)) << places.first().toStdString();
    do {
        QTest::keyClick(field, Qt::Key_Return);
        places << place();
    } while (places.last() != places.first() && places.size() < 50);
    EXPECT_EQ(places.size(), window.toPlainText().count(u"markdown"_s, Qt::CaseInsensitive) + 1);

    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, u"EUR"_s);
    EXPECT_TRUE(place().contains(u".html EUR "_s)) << "on another page: " << place().toStdString();
    const QString found = place();
    QTest::keyClick(field, Qt::Key_F3);
    EXPECT_NE(place(), found);
    QTest::keyClick(field, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(place(), found);

    QTest::keyClicks(field, u"-nowhere"_s);
    EXPECT_EQ(window.findChild<QLabel *>()->text(), u"Not found"_s);
    EXPECT_EQ(window.source().fileName(), found.section(u' ', 0, 0));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible() && window.hasFocus());
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

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

TEST_P(HelpBook, ExplainsEveryErrorCode)
{
    static const QRegularExpression code(u"TD_ERROR_CODE_\\w+ = (\\d+);"_s);
    QStringList explained;
    for (const QStringList &row : tableRows(content(TD_HELP_FAQ_TOPIC), u"errors"_s))
        explained << row.first();
    EXPECT_EQ(explained, allOf(code, contentOfSource(u"Src/foundation/TDError.h"_s)));
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
