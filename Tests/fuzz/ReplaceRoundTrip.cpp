// Decode, replace, encode: every byte outside the matches survives, or nothing is touched.

#include "Fuzzing.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/UserDefaults.h"
#include "matching/TDMatchLineHighlighter.h"
#include "reading/TDFileReader.h"
#include "replace/MatchLineReplacement.h"
#include "replace/TDFileModifier.h"

#include <QDir>

namespace tidemark::fuzz {

namespace {

/// Flushing costs time, and isn't what is looked at here.
class CallsWithoutSync : public FileSystemCalls
{
    int sync(int) override { return 0; }
    int syncFileSystem(int) override { return 0; }
};

/// The lines as they stand in the file.
struct Lines
{
    QList<QByteArray> bytes;
    QString text; ///< of those that can be decoded
    StringEncoding encoding = 0;
};

Lines linesOf(const FilePath &path, StringEncoding encoding)
{
    Lines lines;
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, encoding, error);
    require(reader != nullptr, "the file can be opened");
    lines.encoding = reader->stringEncoding();
    while (const std::optional<LineBytes> line = reader->nextLineBytes(error)) {
        lines.bytes << line->bytes.toByteArray();
        lines.text += reader->decode(line->bytes, error).value_or(QString());
    }
    require(reader->closeFile(error), "the file can be closed");
    return lines;
}

/// The byte position of the character position, where the text can be parted there; otherwise -1.
qsizetype partedAt(TextConverter &converter, const QByteArray &bytes, const QString &text, qint64 position)
{
    for (qsizetype index = 0; index <= bytes.size(); ++index) {
        if (converter.decode(bytes.left(index)) == text.left(position) &&
            converter.decode(bytes.mid(index)) == text.mid(position))
            return index;
    }
    return -1;
}

/// What must stand in place of a line, nothing where its encoding doesn't let its bytes be parted.
std::optional<QByteArray> expectedBytes(TextConverter &converter, const QByteArray &oldBytes,
                                        const TDMatchLine &line, const QString &replaceText)
{
    const auto newBytes = converter.encode(replaceText);
    if (!newBytes)
        return std::nullopt;
    QByteArray expected;
    qsizetype done = 0;
    for (const TextRange &range : line.matchRanges()) {
        const qsizetype start = partedAt(converter, oldBytes, line.savedLineString(), range.location);
        const qsizetype end = partedAt(converter, oldBytes, line.savedLineString(), range.end());
        if (start < done || end < start)
            return std::nullopt;
        expected += oldBytes.mid(done, start - done) + *newBytes;
        done = end;
    }
    return expected + oldBytes.mid(done);
}

/// The file's new content as far as it can be told without the code under test.
struct Expected
{
    std::optional<QByteArray> bytes;
    QString text;
};

bool hasStates(const QByteArray &bytes)
{
    return std::any_of(bytes.begin(), bytes.end(),
                       [](char byte) { return QByteArrayView("\x1B\x0E\x0F~+&").contains(byte); });
}

void checkContent(const FilePath &path, const Expected &expected, StringEncoding encoding)
{
    const QByteArray content = contentOf(path);
    const QByteArray detail = QByteArray::number(encoding, 16) + "\n" + content.toHex(' ') + "\n";
    const bool isOpaque = TextConverter::converterForEncoding(encoding)->shape() == EncodingShape::Opaque;
    // Where the bytes of a text depend on what stands before it, only the text can be compared.
    if (isOpaque && (!expected.bytes || hasStates(content)))
        require(linesOf(path, encoding).text == expected.text, "the text outside the matches survives",
                detail);
    else if (expected.bytes)
        require(content == *expected.bytes, "every byte outside the matches survives",
                detail + expected.bytes->toHex(' '));
}

void checkNothingElseIsLeft(const FilePath &path)
{
    const QStringList names = QDir(folder().displayText()).entryList(QDir::Files | QDir::Hidden);
    require(names == QStringList(QString::fromUtf8(path.lastPathComponent())), "no other file is left",
            names.join(u' ').toUtf8());
}

struct Case
{
    StringEncoding encoding;
    StringEncoding given; ///< or the request to detect it
    QString findText;
    QString replaceText;
    QByteArray content;
};

Case caseFrom(Input &input)
{
    Case made;
    made.encoding = input.encoding();
    made.given = input.flag() ? made.encoding : TD_FILE_COMMON_UNKNOWN_ENCODING;
    const bool isText = input.flag();
    made.findText = QString::fromUtf8(input.line());
    made.replaceText = QString::fromUtf8(input.line());
    made.content = input.rest();
    // Bytes are seldom text of an encoding; texts can be made into some.
    if (const auto converter = TextConverter::converterForEncoding(made.encoding); isText && converter) {
        if (const auto bytes = converter->encode(QString::fromUtf8(made.content)))
            made.content = *bytes;
    }
    return made;
}

Expected replaceInLines(TDMatchLineHighlighter &highlighter, const Case &made, const Lines &file)
{
    const QList<QByteArray> &lines = file.bytes;
    const auto converter = TextConverter::converterForEncoding(file.encoding);
    const TDReplacement replacement(made.findText, made.replaceText,
                                    {SearchMode::PlainText, CaseRule::Ignore},
                                    ReplacementExtent::EveryOccurrence);
    QByteArray bytes = made.content.left(highlighter.includesBOM() ? made.content.indexOf(lines.first()) : 0);
    QString text;
    bool isKnown = true;
    qsizetype index = 0;
    const auto keepUntil = [&](qsizetype end) {
        for (; index < end; ++index) {
            bytes += lines[index];
            text += converter->decode(lines[index]).value_or(QString());
        }
    };
    for (const auto &line : highlighter.matchLines()) {
        keepUntil(line->lineNumber() - 1);
        const auto newBytes = expectedBytes(*converter, lines[index++], *line, made.replaceText);
        isKnown = isKnown && newBytes;
        bytes += newBytes.value_or(QByteArray());
        TDError error;
        replaceMatches(
            *line, replacement, [] { return false; }, error);
        require(error.isNull(), "plain text can be replaced");
        text += line->matchLineString();
    }
    keepUntil(lines.size());
    return {isKnown ? std::optional(bytes) : std::nullopt, text};
}

} // namespace

void run(Input &input)
{
    static CallsWithoutSync calls;
    FileSystemCalls::setCurrent(&calls);
    const Case made = caseFrom(input);
    UserDefaults &settings = UserDefaults::standard();
    settings.setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, made.encoding);
    settings.setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    const FilePath path = writeFile("file", made.content);

    TDError error;
    TDMatchLineHighlighter highlighter;
    const TDFindPattern pattern(made.findText, {SearchMode::PlainText, CaseRule::Ignore});
    if (!highlighter.processWithFile(path, made.given, error, pattern) || highlighter.matchLines().isEmpty())
        return;
    const Lines lines = linesOf(path, made.given);
    const auto expected = replaceInLines(highlighter, made, lines);
    const auto date = TDFileCommon::fileModificationDate(path);
    const bool rewritten =
        TDFileModifier::fileModifierWithFile(path, date, highlighter.matchLines(), made.given,
                                             highlighter.includesBOM(), false, error) != nullptr;
    require(rewritten == error.isNull(), "rewritten or an error");
    if (rewritten)
        checkContent(path, expected, lines.encoding);
    else
        require(contentOf(path) == made.content, "a refused rewrite leaves the file");
    checkNothingElseIsLeft(path);
}

} // namespace tidemark::fuzz
