#include "LanguageInstaller.h"
#include "TextTable.h"
#include "app/UserLanguage.h"
#include "support/Testing.h"
#include "text/TextEncodingTable.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace tidemark::test {

namespace {

const QString SOURCES = QStringLiteral(TIDEMARK_SOURCE_DIR);

QString contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// Adjacent literals as one text, their escapes resolved.
QString textOfLiterals(const QString &literals)
{
    static const QRegularExpression literal(u"\"((?:[^\"\\\\]|\\\\.)*)\""_s);
    QString text;
    for (auto match = literal.globalMatch(literals); match.hasNext();)
        text += match.next().captured(1);
    return text.replace(u"\\n"_s, u"\n"_s).replace(u"\\\""_s, u"\""_s);
}

/// Texts that are shown are the only bare literals there are in the floors with windows, but for names of
/// objects and texts of assertions; below them, those that localizedString() is given. lupdate misses some 70
/// of them, which stand in tables of commands or are handed to functions that look them up later.
void collectSourceKeys(const QString &path, QSet<QString> &keys)
{
    static const QRegularExpression noise(u"^\\s*#.*$|//.*$"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression literals(u"(\\w*)((?:\"(?:[^\"\\\\\\n]|\\\\.)*\"\\s*)+)(_\\w+)?"_s);
    static const QRegularExpression name(
        u"^([a-z]\\w*|\\.[a-z]+|[A-Za-z]+::\\w+|Src/\\w+|The bottom frame .*|\\W)?$"_s);
    static const QRegularExpression asked(u"localizedString\\([^;]*$"_s);
    static const QRegularExpression otherwiseTyped(
        u"(QStringLiteral|QLatin1String|QByteArray\\w*)\\(\\s*$"_s);
    // What these hold besides is for a terminal, a file or another program.
    static const QRegularExpression withoutWindows(
        u"/(main|CommandLine|RunningInstance|Editors|ResultsExport)\\.cpp$"_s);
    const bool hasWindows = !path.contains(withoutWindows) &&
                            (path.contains(u"/Src/app/"_s) || path.contains(u"/Src/window/"_s) ||
                             path.contains(u"/Src/session/"_s));
    const QString source = contentOf(path).remove(noise);
    for (auto match = literals.globalMatch(source); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        if (!found.captured(1).isEmpty() || !found.captured(3).isEmpty())
            continue;
        const QString before =
            source.mid(qMax(0, found.capturedStart() - 300), qMin(300, found.capturedStart()));
        const QString text = textOfLiterals(found.captured(2));
        if (before.contains(otherwiseTyped))
            continue;
        if (before.contains(asked) || (hasWindows && !text.contains(name)))
            keys.insert(text);
    }
}

void collectFormKeys(const QString &path, QSet<QString> &keys)
{
    QXmlStreamReader form(contentOf(path));
    while (!form.atEnd()) {
        if (form.readNext() != QXmlStreamReader::StartElement || form.name() != u"string"_s)
            continue;
        const bool isLocalised = form.attributes().value(u"notr"_s) != u"true"_s;
        const QString text = form.readElementText();
        if (isLocalised && !text.isEmpty())
            keys.insert(text);
    }
}

QSet<QString> allKeys()
{
    QSet<QString> keys;
    for (QDirIterator files(SOURCES + u"/Src"_s, {u"*.cpp"_s, u"*.h"_s}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();)
        collectSourceKeys(files.next(), keys);
    for (QDirIterator files(SOURCES + u"/Resources"_s, {u"*.ui"_s}, QDir::Files); files.hasNext();)
        collectFormKeys(files.next(), keys);
    for (const TextEncodingRow &row : allTextEncodings())
        keys.insert(QString::fromUtf8(row.displayName));
    return keys;
}

QStringList placeholdersIn(const QString &text)
{
    static const QRegularExpression placeholder(u"%(@|lu|d)"_s);
    QStringList found;
    for (auto match = placeholder.globalMatch(text); match.hasNext();)
        found << match.next().captured();
    return found;
}

QChar mnemonicOf(const QString &text)
{
    const qsizetype position = text.indexOf(u'&');
    return position < 0 ? QChar() : text[position + 1].toLower();
}

class LocalizedTexts : public testing::TestWithParam<const char *>
{
protected:
    QString language = QString::fromLatin1(GetParam());
    QMap<QString, QString> table = textTableOf(language);
};

TEST_P(LocalizedTexts, EveryShownTextIsTranslatedAndNothingElse)
{
    const QSet<QString> keys = allKeys();
    EXPECT_GT(keys.size(), 200);
    for (const QString &key : keys)
        EXPECT_FALSE(table.value(key).isEmpty()) << "missing: " << key.toStdString();
    const QStringList translated = table.keys();
    for (const QString &key : translated)
        EXPECT_TRUE(keys.contains(key)) << "left over: " << key.toStdString();
}

TEST_P(LocalizedTexts, PlaceholdersAndLineBreaksAgree)
{
    for (auto entry = table.cbegin(); entry != table.cend(); ++entry) {
        const QString &key = entry.key();
        if (key.startsWith(u"IDS_"_s))
            continue;
        EXPECT_EQ(placeholdersIn(key), placeholdersIn(entry.value())) << key.toStdString();
        EXPECT_EQ(key.count(u'\n'), entry.value().count(u'\n')) << key.toStdString();
        EXPECT_EQ(mnemonicOf(key).isNull(), mnemonicOf(entry.value()).isNull()) << key.toStdString();
        EXPECT_FALSE(entry.value().contains(u"Cmd"_s) || entry.value().contains(u"Finder"_s));
    }
}

TEST_P(LocalizedTexts, KeysOfThingsThatAreSeenTogetherDiffer)
{
    const QString groups[] = {
        u"&File|&Edit|&Search|&Results|&Window|&Help|Search &in|Fin&d|Re&place|Ignore &case|Regular "
        u"e&xpression|&Unicode|Wh&ole words|"
        "File &Types…|&More|Lea&ve out|Obe&y ignore files|S&kip files over|Replace and Fi&nd|"
        "Replace Se&lection…|Replace &All…"_s,
        u"&General|File &types|&Close|&Detect the encoding of each file|Default &encoding|"
        "Make a &backup of each file before it is changed|Find and replace texts to &remember"_s,
        u"&General|File &types|&Close|&Kinds of files that are searched in folders|&Add|D&uplicate|&Remove|"
        "Move U&p|Move Do&wn|Restore &List…"_s,
        u"&Undo|&Redo|Cu&t|&Copy|&Paste|&Delete|Select &All|Pre&ferences…"_s,
        u"&Next Match|&Previous Match|First Match in Next &File|First Match in Pre&vious File|&Replace|"
        "Replace an&d Find|Replace &Selection…|Replace &All…|&Expand or Collapse All|"
        "Re&move Selected from Results"_s};
    for (const QString &group : groups) {
        QMap<QChar, QString> taken;
        for (const QString &key : group.split(u'|')) {
            const QChar mnemonic = mnemonicOf(table.value(key, key));
            EXPECT_FALSE(taken.contains(mnemonic))
                << key.toStdString() << " and " << taken[mnemonic].toStdString();
            taken[mnemonic] = key;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, LocalizedTexts, testing::Values("de", "fr"),
                         [](const auto &language) { return std::string(language.param); });

TEST(UserLanguage, IsTheFirstPreferredOneThatHasTextsWhichAreShown)
{
    EXPECT_EQ(bestLanguage({u"de-AT"_s, u"en"_s}), u"de"_s);
    EXPECT_EQ(bestLanguage({u"it-IT"_s, u"fr-Latn-CH"_s, u"en"_s}), u"fr"_s);
    EXPECT_EQ(bestLanguage({u"C"_s}), u"en"_s);
    EXPECT_EQ(bestLanguage({}), u"en"_s);
    EXPECT_EQ(bestLanguage({u"en-GB"_s, u"de"_s}), u"en"_s);
    {
        const LanguageInstaller german(u"de"_s);
        EXPECT_EQ(localizedString("Replace All"), u"Alle ersetzen"_s);
        EXPECT_EQ(localizedString("IDS_WildcardSample2Uti"), u"*.[ch]"_s);
    }
    EXPECT_EQ(localizedString("Replace All"), u"Replace All"_s);
    EXPECT_EQ(localizedString("Reveal in Finder"), u"Show in File Manager"_s);
}

} // namespace

} // namespace tidemark::test
