#include "foundation/UserDefaults.h"
#include "matching/SearchDescription.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"
#include "text/Utf8.h"

#include <random>

namespace tidemark::test {
namespace {

/// A random file: pieces of text, line ends of all kinds, now and then something nasty.
class FileMaker
{
public:
    explicit FileMaker(unsigned seed) : _random(seed) {}

    QByteArray make()
    {
        static const QByteArrayList MARKS = {
            "", "", "", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF", "\xFF\xFE\0\0"_ba, "\0\0\xFE\xFF"_ba};
        const qsizetype kind = _below(int(MARKS.size()));
        const int pieces = _below(4) == 0 ? _below(6) : _below(400);
        QString text;
        for (int piece = 0; piece < pieces; ++piece)
            text += _piece();
        QByteArray bytes = MARKS[kind] + _encoded(text, MARKS[kind]);
        if (_below(8) == 0 && !bytes.isEmpty())
            bytes.insert(_below(int(bytes.size())), char(0x80 + _below(128)));
        return bytes;
    }

private:
    QString _piece()
    {
        static const QStringList PIECES =
            u"tide,Tide ,\n,\r,\r\n,\n\n,é,Прилив ,ab ,\u2028,\t,t\u0131de,😀tide,tide\u0301,x1 ,\f"_s.split(
                u',');
        if (_below(3000) == 0)
            return QString(24990 + _below(20), u'y');
        if (_below(2000) == 0)
            return QString(140000, u'z');
        return PIECES[_below(int(PIECES.size()))];
    }

    static QByteArray _encoded(const QString &text, const QByteArray &mark)
    {
        StringEncoding encoding = TD_ENCODING_UTF8;
        if (mark.size() == 2)
            encoding = mark[0] == '\xFF' ? TD_ENCODING_UTF16_LITTLE_ENDIAN : TD_ENCODING_UTF16_BIG_ENDIAN;
        if (mark.size() == 4)
            encoding = mark[0] == '\xFF' ? TD_ENCODING_UTF32_LITTLE_ENDIAN : TD_ENCODING_UTF32_BIG_ENDIAN;
        return TextConverter::converterForEncoding(encoding)->encode(text).value_or(QByteArray());
    }

    int _below(int limit) { return int(_random() % unsigned(limit)); }
    std::mt19937 _random;
};

class BlockSearch : public testing::Test
{
protected:
    static void setMode(bool isExpression)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, isExpression);
    }
    TemporaryFolder folder;
};

TEST_F(BlockSearch, FindsWhatTheLineReaderFindsInRandomFiles)
{
    for (const auto &[findText, isExpression] : {std::pair(u"tide"_s, false),
                                                 {u"é"_s, false},
                                                 {u"ПРИЛИВ"_s, false},
                                                 {u"t[i1]de?"_s, true},
                                                 {u"^x1|e $"_s, true},
                                                 {u"\\bab\\b"_s, true},
                                                 {u"y*"_s, true},
                                                 {u"(.)\\1"_s, true},
                                                 {u"e"_s, false},
                                                 {u"("_s, true},
                                                 {u"[^ -~]+"_s, true},
                                                 {u""_s, false}}) {
        setMode(isExpression);
        const TDFindPattern pattern(findText, FindOptions::withUserDefaults(CaseRule::Ignore));
        SearchContext context(pattern);
        FileMaker files(unsigned(findText.size()) * 77 + 5);
        for (int round = 0; round < 40; ++round) {
            const FilePath path = folder.write("file", files.make());
            ASSERT_EQ(SearchDescription::byLines(path, pattern), SearchDescription::byBlocks(path, context))
                << "searching for " << findText.toStdString() << ", round " << round;
        }
    }
}

TEST_F(BlockSearch, FindsWhatTheLineReaderFindsInLargeFiles)
{
    std::mt19937 random(3);
    QByteArray content;
    while (content.size() < 10'000'000) {
        const char *const words[] = {"tide é", "ebb, flow, neap", "slack water between the tides"};
        content += words[random() % 50 == 0 ? 0 : 1 + random() % 2];
        content += QByteArrayList({"\n", "\r", "\r\n"}).value(qsizetype(random() % 12), " and ");
    }
    const QByteArrayList ends = {"tide", "\nno text: \xFF\n", "\n" + QByteArray(25'001, 'y') + "\ntide\n"};
    // Chosen lines, every line, an expression at fault.
    for (const auto &[findText, isExpression] :
         {std::pair(u"tide é"_s, false), {u"a"_s, false}, {u"("_s, true}}) {
        setMode(isExpression);
        const TDFindPattern pattern(findText, FindOptions::withUserDefaults(CaseRule::Ignore));
        SearchContext context(pattern);
        // The line reader takes long with sanitizers.
        for (const QByteArray &end : IS_SANITIZED ? ends.first(isExpression ? 1 : 2) : ends) {
            const FilePath path = folder.write("file", content + end);
            ASSERT_EQ(SearchDescription::byLines(path, pattern), SearchDescription::byBlocks(path, context))
                << findText.toStdString();
        }
    }
    setMode(false);
    const TDFindPattern pattern(u"tide é"_s, FindOptions::withUserDefaults(CaseRule::Ignore));
    SearchContext context(pattern);
    const auto utf16 = TextConverter::converterForEncoding(TD_ENCODING_UTF16_BIG_ENDIAN);
    const QByteArray bigEndian =
        "\xFE\xFF" + utf16->encode(QString::fromUtf8(content.first(5'000'000))).value();
    for (const QByteArray &end : {""_ba, "\xD8\0\0\n"_ba}) {
        const FilePath path = folder.write("file", bigEndian + end);
        EXPECT_EQ(SearchDescription::byLines(path, pattern), SearchDescription::byBlocks(path, context));
    }
}

TEST_F(BlockSearch, FindsWhatTheLineReaderFindsInEveryEncoding)
{
    const TDFindPattern pattern(QStringLiteral("e"), FindOptions::withUserDefaults(CaseRule::Ignore));
    SearchContext context(pattern);
    std::mt19937 random(23);
    for (const StringEncoding encoding : availableStringEncodings()) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        QByteArrayList pieces = {"\n", "\r", "\r\n", "e\\~ "};
        for (const QChar character : QStringLiteral("eE\n\réПלع漢字かな한글中文、。¥ア\u0301"))
            pieces << converter->encode(QStringView(&character, 1)).value_or("e");
        for (int round = 0; round < 25; ++round) {
            QByteArray content;
            for (unsigned left = random() % 80; left > 0; --left)
                content += pieces[random() % size_t(pieces.size())];
            // Lead bytes before line ends, line ends within characters, and whatever else isn't allowed.
            for (unsigned left = random() % 3; left > 0; --left)
                content.insert(qsizetype(random() % size_t(content.size() + 1)), char(random()));
            const FilePath path = folder.write("file", content);
            ASSERT_EQ(SearchDescription::byLines(path, pattern, encoding),
                      SearchDescription::byBlocks(path, context, encoding))
                << encoding << ' ' << content.toHex().constData();
        }
    }
}

TEST_F(BlockSearch, TakesTheEncodingFromWhereTheLineReaderTakesIt)
{
    const TDFindPattern pattern(u"größe"_s, FindOptions::withUserDefaults(CaseRule::Ignore));
    SearchContext context(pattern);
    const QByteArray latin = "GR\xD6\xDF"
                             "E und gr\xF6\xDF"
                             "e\nnichts\n";
    const QList<QByteArray> contents = {
        "<?xml version='1.0' encoding='iso-8859-1'?>\n" + latin,
        "<html><META http-equiv=x content='text/html; charset=windows-1252'>\r\n" + latin,
        "<?xml encoding='no-such-name'?>\n" + latin,
        "<?xml encoding='shift_jis'?>\nplain\n",
        "<?xml encoding='iso-2022-jp'?>\ngrosse\n",
        "<?xml encoding='iso-8859-1'?>\n" + latin,
        "<?xml encoding='utf-16'?>\ntext\n",
        "<?xml encoding='iso-8859-1'?>\n" + latin,
        latin,
        "ab",
        "abc",
        "",
        "\xFF\xFEg\0r\0\xF6\0\xDF\0e\0\n\0x"_ba,
        "\xFF\xFEg\0r\0\xF6\0\xDF\0e\0\n\0\x00\xD8x\0"_ba,
    };
    for (const QByteArray &content : contents) {
        const FilePath path = folder.write("file", content);
        EXPECT_EQ(SearchDescription::byLines(path, pattern), SearchDescription::byBlocks(path, context))
            << content.left(60).toStdString();
    }
    EXPECT_EQ(SearchDescription::byLines(folder.path("missing"), pattern),
              SearchDescription::byBlocks(folder.path("missing"), context));
    EXPECT_EQ(SearchDescription::byLines(folder.path(), pattern),
              SearchDescription::byBlocks(folder.path(), context));
}

} // namespace
} // namespace tidemark::test
