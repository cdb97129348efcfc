#include "foundation/FileSystemCalls.h"
#include "matching/TDMatchLineHighlighter.h"
#include "reading/EncodingDetection.h"
#include "replace/EncodingOracle.h"
#include "replace/MatchLineReplacement.h"
#include "replace/PerlOracle.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/TDFileModifier.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"

#include <QHash>

#include <algorithm>
#include <map>

namespace tidemark::test {
namespace {

/// Texts of one encoding: those that a file of it can hold, whoever writes it.
class EncodedTexts
{
public:
    explicit EncodedTexts(StringEncoding encoding)
        : _oracle(encoding), _own(TextConverter::converterForEncoding(encoding))
    {}

    /// Without the characters that aren't in the encoding.
    QString heldOf(const QString &text)
    {
        QString held;
        for (const char32_t codePoint : text.toStdU32String()) {
            const QString character = QString::fromUcs4(&codePoint, 1);
            auto known = _isHeld.constFind(codePoint);
            if (known == _isHeld.constEnd())
                known = _isHeld.insert(codePoint, _oracle.agreesOn(character));
            if (*known)
                held += character;
        }
        return held;
    }
    /// Nothing where characters mean something else beside each other.
    std::optional<QByteArray> encode(const QString &text) const
    {
        const auto bytes = _oracle.encode(text);
        return bytes && _own->decode(*bytes) == text ? bytes : std::nullopt;
    }
    std::optional<QString> decode(const QByteArray &bytes) const { return _own->decode(bytes); }
    bool holds(const QString &text) const
    {
        const auto bytes = _own->encode(text);
        return bytes && _own->decode(*bytes) == text;
    }

private:
    EncodingOracle _oracle;
    std::unique_ptr<TextConverter> _own;
    QHash<char32_t, bool> _isHeld;
};

struct FileCase
{
    StringEncoding encoding;
    Expression expression;
    QString format;
    bool ignoresCase;
    QStringList lines;
    QByteArray mark;
};

class PerlOracleFiles : public ReplaceTest
{
protected:
    PerlOracleFiles()
    {
        setKeepsBackups(false);
        FileSystemCalls::setCurrent(&_calls);
    }
    ~PerlOracleFiles() override { FileSystemCalls::setCurrent(nullptr); }

    EncodedTexts &textsOf(StringEncoding encoding)
    {
        return _texts.try_emplace(encoding, encoding).first->second;
    }
    FileCase caseOf(StringEncoding encoding);
    bool askPerl(const FileCase &made);
    bool isFoundAsByPerl(const MatchLines &found) const;
    QStringList replaceSome(const FileCase &made, const MatchLines &found);
    void check(const FileCase &made);

    UnflushedCalls _calls;
    Perl _perl;
    CaseMaker _maker{11};
    std::map<StringEncoding, EncodedTexts> _texts;
    QList<QList<Perl::Match>> _matches; ///< of each line
    int _rewritten = 0;
    int _refused = 0;
};

FileCase PerlOracleFiles::caseOf(StringEncoding encoding)
{
    EncodedTexts &texts = textsOf(encoding);
    const Expression expression = _maker.expression();
    QString format = _maker.format(_maker.groups());
    // Now and then a text that the encoding doesn't hold comes in.
    if (_maker.below(8) != 0) {
        if (texts.heldOf(u"😀"_s).isEmpty())
            format.remove(u"\\x{1F600}"_s);
        format = texts.heldOf(format);
    }
    FileCase made = {encoding, expression, format, _maker.below(3) == 0, {}, {}};
    // Its line feed is none to the line reader.
    for (int count = encoding == EBCDIC ? 1 : 4; count > 0; --count)
        made.lines << texts.heldOf(_maker.line());
    if (mayRefuse(encoding) || _maker.below(2) == 0)
        made.mark = byteOrderMarkOfEncoding(encoding);
    return made;
}

/// Whether the expression is one.
bool PerlOracleFiles::askPerl(const FileCase &made)
{
    _matches.clear();
    for (const QString &line : made.lines) {
        const Perl::Answer answer = _perl.ask(made.ignoresCase, made.expression.perl, made.format, line);
        if (answer.isMalformed)
            return false;
        _matches << answer.matches;
    }
    return true;
}

/// One match, those of some lines, or all; the lines as they have to be then.
QStringList PerlOracleFiles::replaceSome(const FileCase &made, const MatchLines &found)
{
    const TDReplacement replacement(
        made.expression.own, made.format,
        {SearchMode::UnicodeExpression, made.ignoresCase ? CaseRule::Ignore : CaseRule::Exact},
        ReplacementExtent::EveryOccurrence);
    const int extent = _maker.below(3);
    QStringList expected = made.lines;
    TDError error;
    for (const auto &line : found) {
        const qsizetype index = line->lineNumber() - 1;
        const QList<Perl::Match> &matches = _matches[index];
        if (extent == 0) {
            const qsizetype match = _maker.below(int(matches.size()));
            EXPECT_TRUE(replaceMatch(*line, match, replacement, error));
            expected[index] = replacedBy(made.lines[index], matches, match, match + 1);
            break;
        }
        if (extent == 1 && _maker.below(2) == 0)
            continue;
        replaceMatches(
            *line, replacement, [] { return false; }, error);
        expected[index] = replacedBy(made.lines[index], matches, 0, matches.size());
    }
    EXPECT_TRUE(error.isNull());
    return expected;
}

bool PerlOracleFiles::isFoundAsByPerl(const MatchLines &found) const
{
    QList<QList<TextRange>> ranges(_matches.size());
    for (const auto &line : found) {
        if (line->lineNumber() > ranges.size())
            return false;
        ranges[line->lineNumber() - 1] = line->matchRanges();
    }
    return std::equal(ranges.begin(), ranges.end(), _matches.begin(), [](const auto &own, const auto &perl) {
        return std::equal(own.begin(), own.end(), perl.begin(), perl.end(),
                          [](TextRange range, const Perl::Match &match) { return range == match.range; });
    });
}

void PerlOracleFiles::check(const FileCase &made)
{
    const QString end = made.encoding == EBCDIC ? QString() : u"\n"_s;
    const EncodedTexts &texts = textsOf(made.encoding);
    const auto bytes = texts.encode(made.lines.join(end) + end);
    if (!bytes || bytes->isEmpty() || !askPerl(made))
        return;
    SCOPED_TRACE((localizedNameOfStringEncoding(made.encoding) + u"\n"_s + made.expression.own + u"\n"_s +
                  made.format + u"\n"_s + made.lines.join(u"\n"_s))
                     .toStdString());
    const FilePath path = _folder.write("file.txt", made.mark + *bytes);
    // Marks are looked for where the encoding isn't given.
    const StringEncoding given = made.mark.isEmpty() ? made.encoding : TD_FILE_COMMON_UNKNOWN_ENCODING;
    TDMatchLineHighlighter highlighter;
    TDError error;
    const TDFindPattern pattern(made.expression.own, {SearchMode::UnicodeExpression,
                                                      made.ignoresCase ? CaseRule::Ignore : CaseRule::Exact});
    if (!highlighter.processWithFile(path, given, error, pattern)) {
        EXPECT_TRUE(mayRefuse(made.encoding)) << error.localizedFailureReason().toStdString();
        return;
    }
    if (!isFoundAsByPerl(highlighter.matchLines())) {
        EXPECT_TRUE(mayRefuse(made.encoding));
        return;
    }
    const QString expected = replaceSome(made, highlighter.matchLines()).join(end) + end;
    const bool isRewritten = TDFileModifier::fileModifierWithFile(
                                 path, TDFileCommon::fileModificationDate(path), highlighter.matchLines(),
                                 given, highlighter.includesBOM(), false, error) != nullptr;
    const QByteArray content = contentOfFile(path);
    if (isRewritten) {
        ++_rewritten;
        EXPECT_TRUE(content.startsWith(made.mark));
        EXPECT_EQ(texts.decode(content.mid(made.mark.size())).value_or(u"?"_s), expected);
    } else {
        ++_refused;
        EXPECT_TRUE(!texts.holds(expected) || mayRefuse(made.encoding))
            << error.localizedFailureReason().toStdString();
        EXPECT_EQ(content, made.mark + *bytes);
    }
}

TEST_F(PerlOracleFiles, HoldInEveryEncodingWhatPerlMakesOfTheirText)
{
    if (!MAY_START_PROGRAMS)
        GTEST_SKIP() << "perl can't be started";
    ASSERT_TRUE(_perl.isThere()) << "perl is missing";
    const QList<StringEncoding> encodings = availableStringEncodings();
    for (int number = 0; number < oracleCases() && !HasFailure(); ++number)
        check(caseOf(encodings[number % encodings.size()]));
    RecordProperty("rewritten", _rewritten);
    RecordProperty("refused", _refused);
    EXPECT_GT(_rewritten, oracleCases() / 2);
    EXPECT_GT(_refused, 0);
}

} // namespace
} // namespace tidemark::test
