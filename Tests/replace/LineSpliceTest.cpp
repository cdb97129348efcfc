#include "replace/LineSplice.h"

#include "foundation/ExtendedAttributes.h"
#include "reading/EncodingDetection.h"
#include "replace/ReplaceTestSupport.h"
#include "support/Testing.h"

#include <gmock/gmock.h>

namespace tidemark::test {
namespace {

class LineSpliceTest : public ReplaceTest
{
protected:
    LineSpliceTest() { FileSystemCalls::setCurrent(&_calls); }
    ~LineSpliceTest() override { FileSystemCalls::setCurrent(nullptr); }

    UnflushedCalls _calls;
};

/// Encoding, the file before, what is found, what takes its place, the file after.
TEST_F(LineSpliceTest, OnlyTheBytesOfMatchesChange)
{
    setKeepsBackups(false);
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/line-splices.tsv")) {
        SCOPED_TRACE(row.line);
        const FilePath path = _folder.write("file.txt", row.bytes(1));
        setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                            attributeValueForEncoding(row.number(0)), 0);
        replaceAll({searchOne(path, row.text(2))}, row.text(2), row.text(3));
        EXPECT_EQ(contentOfFile(path).toPercentEncoding(" ()$~{}").toStdString(),
                  row.bytes(4).toPercentEncoding(" ()$~{}").toStdString());
    }
}

/// The second and third replacement begin where the one before left the line.
TEST_F(LineSpliceTest, ASavedLineIsTheNextOnesStart)
{
    constexpr StringEncoding CP932 = 0x8;
    setKeepsBackups(false);
    const FilePath path = _folder.write("file.txt", "\x87\x90one\x87\x90two\x87\x90one\x87\x90");
    setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                        attributeValueForEncoding(CP932), 0);
    const auto file = searchOne(path, u"one"_s);
    for (const QString &replacement : {u"\u2252"_s, u"\u2252\u2252"_s, u"x"_s}) {
        file->matchLines()[0]->matchLine()->setReplacedMatches({});
        replaceAll({file}, u"one"_s, replacement);
        // A run passes over what was replaced.
        for (const auto &line : file->children())
            line->matchLine()->setReplacedMatches({});
        QByteArray bytes = replacement.toUtf8();
        bytes.replace("\xE2\x89\x92", "\x81\xE0");
        EXPECT_EQ(contentOfFile(path).toHex(' '),
                  ("\x87\x90" + bytes + "\x87\x90two\x87\x90" + bytes + "\x87\x90").toHex(' '));
    }
}

std::vector<TextEdit> edits(const QString &oldText, const QString &newText,
                            const QList<TextRange> &oldRanges = {}, const QList<TextRange> &newRanges = {})
{
    return textEdits(oldText, newText, oldRanges, newRanges);
}

MATCHER_P4(IsEdit, oldStart, oldLength, newStart, newLength, "")
{
    return arg.oldRange == TextRange{oldStart, oldLength} && arg.newRange == TextRange{newStart, newLength};
}

TEST(TextEditsTest, AreThoseOfTheRangesIfTheTextsBearThemOut)
{
    using testing::ElementsAre;
    EXPECT_THAT(edits(u"axa"_s, u"aaa"_s, {{1, 1}}, {{1, 1}}), ElementsAre(IsEdit(1, 1, 1, 1)));
    EXPECT_THAT(edits(u"xaxbx"_s, u"yyaxb"_s, {{0, 1}, {2, 1}, {4, 1}}, {{0, 2}, {3, 1}, {5, 0}}),
                ElementsAre(IsEdit(0, 1, 0, 2), IsEdit(4, 1, 5, 0)))
        << "what was replaced by itself is none";
    EXPECT_THAT(edits(u"one two"_s, u"one 2 two"_s, {{4, 0}}, {{4, 3}}), ElementsAre(IsEdit(4, 0, 4, 2)))
        << "around the ranges the texts differ";
    EXPECT_THAT(edits(u"one"_s, u"two"_s, {{2, 5}}, {{-1, 9}}), ElementsAre(IsEdit(0, 3, 0, 3)));
    EXPECT_THAT(edits(u"aa"_s, u"aaa"_s, {{0, 1}}, {}), ElementsAre(IsEdit(2, 0, 2, 1)));
}

TEST(SplicedLineTest, ACodeThatIsPartedIsEncodedWhole)
{
    const auto converter = TextConverter::converterForEncoding(0x80000632);
    const auto bytes = converter->encode(u"a\U0001F600b");
    const auto expected = converter->encode(u"a\U0001F601b");
    ASSERT_TRUE(bytes && expected);
    const auto spliced = [&](const QString &newText, const TextEdit &edit) {
        return splicedLine(*converter, *bytes, u"a\U0001F600b", newText, {edit});
    };
    EXPECT_EQ(spliced(u"a\U0001F601b"_s, {{2, 1}, {2, 1}}), expected);
    EXPECT_EQ(spliced(u"ab"_s, {{1, 2}, {1, 0}}), "ab");
    EXPECT_FALSE(spliced(u"a"_s + QChar(0xDE00) + u'b', {{1, 1}, {1, 0}}));
}

} // namespace
} // namespace tidemark::test
