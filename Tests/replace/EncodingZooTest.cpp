#include "foundation/ExtendedAttributes.h"
#include "foundation/FileSystemCalls.h"
#include "reading/EncodingDetection.h"
#include "replace/EncodingOracle.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/RewritePlan.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "text/TextEncoding.h"

#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// A few characters beyond ASCII that the encoding holds. Where lines are split by code units, two of them
/// have the bytes of line ends.
QString charactersOf(StringEncoding encoding, const EncodingOracle &oracle)
{
    QString candidates = mayRefuse(encoding) ? QString() : u"\u0A0A\u0D0D"_s;
    candidates +=
        u"\u6F22\u8A9E\u3042\uD55C\u0436\u03C9\u05E9\u0633\u0E01\u00E9\u00FC\u0159\u0151\u0131\u0126\u00F0\u1E0B\u20AC\u00A3"_s;
    QString found;
    for (const QChar character : candidates) {
        if (found.size() < 3 && oracle.agreesOn(QString(character)))
            found += character;
    }
    return found;
}

struct Replacing
{
    SearchMode mode;
    QString findText;
    QString replaceText;
    /// Of one line after the other: %1 marks a match, which has `matched` before and `replaced` after.
    QStringList lines;
    QString matched;
    QString replaced;
    int matches;
};

Replacing plainReplacing(const QString &characters)
{
    const QString &c = characters;
    const QString find = u"nee"_s + c.left(1) + u"dle"_s;
    const QString replacement = c.right(1) + u"pin"_s + c.left(2);
    return {SearchMode::PlainText,
            find,
            replacement,
            {c + u" one %1 two"_s + c + u"%1 x"_s, u"no match here "_s + c, QString(), u"%1%1 needl"_s,
             u" tail "_s + c + u"%1"_s + c + u" end"_s},
            find,
            replacement,
            5};
}

/// Only ASCII before the matches, as positions of expressions count bytes.
Replacing expressionReplacing(const QString &characters)
{
    const QString &c = characters;
    return {SearchMode::RegularExpression,
            u"n(ee)(d)le"_s,
            u"$2-$1"_s + c.left(1),
            {u"one %1 two %1 x"_s + c, u"no match here "_s + c, QString(), u"%1 needl"_s,
             u" tail %1 end"_s + c + u"x"_s},
            u"needle"_s,
            u"d-ee"_s + c.left(1),
            4};
}

struct ZooFile
{
    QByteArray name;
    QByteArray before;
    QByteArray after;
    QString textAfter;
    bool hasAttribute = true;
    QByteArray mark = {};
};

class EncodingZooTest : public ReplaceTest
{
protected:
    EncodingZooTest() { setKeepsBackups(false); }
    ~EncodingZooTest() override
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, {});
    }

    void replaceInEveryEncoding(Replacing (*replacingWith)(const QString &characters));
    void replaceInFilesOf(StringEncoding encoding, const EncodingOracle &oracle, const Replacing &replacing);

    void checkRewritten(const ZooFile &file, StringEncoding encoding, const FilePath &path,
                        TDFindResultItem &node, int matches);
    void checkRefused(const ZooFile &file, StringEncoding encoding, const FilePath &path);

    int _independentOracles = 0;
};

/// The text of the whole file with its matches as `match`.
QString textOf(const Replacing &replacing, const QString &match, const QStringList &lineEnds,
               bool lastLineEnds)
{
    QString text;
    for (qsizetype index = 0; index < replacing.lines.size(); ++index) {
        QString line = replacing.lines[index];
        text += line.replace(u"%1"_s, match);
        if (lastLineEnds || index + 1 < replacing.lines.size())
            text += lineEnds[index % lineEnds.size()];
    }
    return text;
}

QList<ZooFile> filesOf(StringEncoding encoding, const EncodingOracle &oracle, const Replacing &replacing)
{
    const QList<std::pair<QByteArray, QStringList>> lineEnds = {{"LF", {u"\n"_s}},
                                                                {"CR", {u"\r"_s}},
                                                                {"CRLF", {u"\r\n"_s}},
                                                                {"mixed", {u"\r"_s, u"\n"_s, u"\r\n"_s}}};
    const QByteArray mark = byteOrderMarkOfEncoding(encoding);
    QList<ZooFile> files;
    const auto add = [&](const QByteArray &name, const QString &start, const QStringList &ends,
                         bool lastEnds) {
        const QString textAfter = start + textOf(replacing, replacing.replaced, ends, lastEnds);
        const auto before = oracle.encode(start + textOf(replacing, replacing.matched, ends, lastEnds));
        const auto after = oracle.encode(textAfter);
        ASSERT_TRUE(before && after);
        files << ZooFile{name + ".txt", *before, *after, textAfter, start.isEmpty()};
        if (!mark.isEmpty() && start.isEmpty())
            files << ZooFile{name + "-marked.txt", mark + *before, mark + *after, textAfter, false, mark};
    };
    for (const auto &[name, ends] : lineEnds) {
        add(name, {}, ends, true);
        add(name + "-open", {}, ends, false);
    }
    const CoreFoundationEncoding number = convertStringEncodingToCoreFoundation(encoding);
    const QString charSet = convertEncodingToIANACharSetName(number);
    const QString declaration = u"<?xml version=\"1.0\" encoding=\"%1\"?>"_s.arg(charSet);
    const auto bytes = oracle.encode(declaration);
    if (bytes && declaredEncoding(*bytes) == encoding)
        add("declared", declaration, {u"\n"_s}, true);
    return files;
}

void EncodingZooTest::replaceInEveryEncoding(Replacing (*replacingWith)(const QString &characters))
{
    setMode(replacingWith({}).mode);
    for (const StringEncoding encoding : availableStringEncodings()) {
        SCOPED_TRACE(localizedNameOfStringEncoding(encoding).toStdString());
        const EncodingOracle oracle(encoding);
        _independentOracles += oracle.isIndependent() ? 1 : 0;
        QString characters = charactersOf(encoding, oracle);
        EXPECT_EQ(characters.isEmpty(), encoding == TD_ENCODING_ASCII);
        // Its LF is none to the line reader, so all matches share a line, and positions of expressions count
        // bytes.
        if (encoding == EBCDIC && replacingWith({}).mode == SearchMode::RegularExpression)
            characters.clear();
        replaceInFilesOf(encoding, oracle, replacingWith(characters));
    }
}

void EncodingZooTest::replaceInFilesOf(StringEncoding encoding, const EncodingOracle &oracle,
                                       const Replacing &replacing)
{
    const TemporaryFolder folder;
    const TemporaryFolder links;
    const QList<ZooFile> files = filesOf(encoding, oracle, replacing);
    const QByteArray number = QByteArray::number(convertStringEncodingToCoreFoundation(encoding));
    QList<FileIdentity> identities;
    // The number 0 in the attribute means nothing.
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING,
                                       number == "0" ? encoding : TD_ENCODING_UTF8);
    for (const ZooFile &file : files) {
        const FilePath path = folder.write(file.name, file.before);
        if (file.hasAttribute)
            setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                                u"?;"_s + QString::fromLatin1(number), 0);
        setxattr(path.cString(), "user.note", "kept\0too", 8, 0);
        EXPECT_EQ(link(path.cString(), links.path(file.name).cString()), 0);
        if (runsAsRoot()) {
            EXPECT_EQ(chown(path.cString(), 65534, 65533), 0);
        }
        EXPECT_EQ(chmod(path.cString(), 0641), 0);
        identities << FileIdentity(path);
    }
    const QList<QByteArray> names = folder.names();

    const FindResultItems found = search(folder.path(), replacing.findText);
    const std::atomic<bool> stop = false;
    TDSelectedMatchReplacement run(request(replacing.findText, replacing.replaceText), stop);
    const auto outcome = run.replaceSelectedMatches(matchLinesOf(found));

    EXPECT_EQ(folder.names(), names) << "no backup is left";
    for (qsizetype index = 0; index < files.size(); ++index) {
        SCOPED_TRACE(files[index].name.toStdString());
        const FilePath path = folder.path(files[index].name);
        EXPECT_TRUE(FileIdentity(path) == identities[index]);
        EXPECT_EQ(contentOfFile(links.path(files[index].name)), contentOfFile(path));
        const auto node =
            std::find_if(found.begin(), found.end(), [&](const auto &f) { return f->path() == path; });
        const bool rewritten =
            node != found.end() && (*node)->matches() != nullptr && !outcome.failedPaths().contains(path);
        if (rewritten)
            checkRewritten(files[index], encoding, path, **node, replacing.matches);
        else
            checkRefused(files[index], encoding, path);
    }
}

void EncodingZooTest::checkRewritten(const ZooFile &file, StringEncoding encoding, const FilePath &path,
                                     TDFindResultItem &node, int matches)
{
    EXPECT_EQ(node.matchCount().value_or(-1), matches);
    EXPECT_EQ(node.includesBOM(), !file.mark.isEmpty());
    const QByteArray content = contentOfFile(path);
    // What a line designates for itself may be designated already by a line before it.
    if (!mayRefuse(encoding) ||
        TextConverter::converterForEncoding(encoding)->decode(content) != file.textAfter) {
        EXPECT_EQ(content, file.after);
    }
    EXPECT_EQ(pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING).value_or(QString()),
              attributeValueForEncoding(encoding));
}

void EncodingZooTest::checkRefused(const ZooFile &file, StringEncoding encoding, const FilePath &path)
{
    EXPECT_TRUE(mayRefuse(encoding));
    EXPECT_EQ(contentOfFile(path), file.before);
}

TEST_F(EncodingZooTest, PlainTextIsReplacedAndEveryOtherByteStays)
{
    replaceInEveryEncoding(plainReplacing);
    EXPECT_GT(_independentOracles, 50);
}

TEST_F(EncodingZooTest, ExpressionsAreReplacedAndEveryOtherByteStays)
{
    replaceInEveryEncoding(expressionReplacing);
}

} // namespace
} // namespace tidemark::test
