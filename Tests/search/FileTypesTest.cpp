#include "search/FileTypes.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

/// The identifiers beyond those of every file, short and in order: "content plain-text text".
QString furtherTypes(const QByteArray &name, const QByteArray &content)
{
    QStringList identifiers = typeIdentifiersForFile(name, [&] { return content; }).values();
    EXPECT_TRUE(identifiers.removeOne(u"public.item"_s)) << name.constData();
    EXPECT_TRUE(identifiers.removeOne(u"public.data"_s)) << name.constData();
    identifiers.replaceInStrings(u"public."_s, QString());
    identifiers.sort();
    return identifiers.join(u' ');
}

const QString PLAIN = u"content plain-text text"_s;
const QByteArray TEXT = "some words\n";
const QByteArray DATA("\x7F"
                      "ELF\x02\x00\x01",
                      7);

TEST(FileTypes, NameDecidesAndContentWhereItLeavesAChoice)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/file-types.tsv")) {
        const QString ifData = row.fields.size() < 3 ? row.text(1) : row.text(2).remove(u'-');
        EXPECT_EQ(furtherTypes(row.bytes(0), TEXT), row.text(1)) << row.line;
        EXPECT_EQ(furtherTypes(row.bytes(0), DATA), ifData) << row.line;
    }
}

TEST(FileTypes, WhatLooksLikeText)
{
    for (const QByteArray &text :
         {"plain"_ba, "caf\xE9 in an old encoding"_ba, "\t\n\v\f\r\b\x1B[1m"_ba, QByteArray(4096, 'a'),
          "\xEF\xBB\xBF"_ba, "\xFF\xFE\x61\0"_ba, "\xFE\xFF\0a"_ba, "\0\0\xFE\xFF\0\0\0a"_ba,
          "\xFF\xFE\0\0a\0\0\0"_ba, QByteArray() /* can't be read */})
        EXPECT_EQ(furtherTypes("x", text), PLAIN) << text.toHex().constData();
    for (const QByteArray &data : {""_ba, "a\0b"_ba, "a\x01"_ba, "a\x0E"_ba, QByteArray(4095, 'a') + '\x02',
                                   '\x02' + QByteArray(4095, 'a')})
        EXPECT_EQ(furtherTypes("x", data), QString()) << data.toHex().constData();
}

TEST(FileTypeFilter, LooksIntoFilesOnlyWhereThatMatters)
{
    int probes = 0;
    const auto probe = [&probes] {
        ++probes;
        return TEXT;
    };
    FileTypeFilter everything({u"public.item"_s}, {});
    EXPECT_TRUE(everything.admits("noextension", probe));
    FileTypeFilter images({u"public.image"_s}, {});
    EXPECT_TRUE(images.admits("a.PNG", probe));
    EXPECT_FALSE(images.admits("noextension", probe));
    FileTypeFilter text({u"public.text"_s}, {u"no*"_s});
    EXPECT_TRUE(text.admits("a.txt", probe));
    EXPECT_FALSE(text.admits("a.zip", probe));
    EXPECT_TRUE(text.admits("noextension", probe));
    EXPECT_EQ(probes, 0);
    EXPECT_TRUE(text.admits("extensionless", probe));
    EXPECT_EQ(probes, 1);
}

TEST(FileTypeFilter, AnswersAreNotMixedUpBetweenNames)
{
    FileTypeFilter filter({u"PUBLIC.source-code"_s}, {});
    const auto admits = [&](const char *name) { return filter.admits(name, [] { return TEXT; }); };
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(admits("CMakeLists.txt"));
        EXPECT_FALSE(admits("Lists.txt"));
        EXPECT_TRUE(admits("Makefile"));
        EXPECT_FALSE(admits("Makefiles"));
        EXPECT_FALSE(admits("a.Makefile"));
        EXPECT_TRUE(admits("makefile.am"));
        EXPECT_FALSE(admits("a.am"));
    }
    FileTypeFilter archives({u"public.archive"_s}, {});
    EXPECT_TRUE(archives.admits("a.gz", [] { return TEXT; }));
    EXPECT_FALSE(archives.admits("a.svg.gz", [] { return TEXT; }));
    EXPECT_TRUE(archives.admits("b.gz", [] { return TEXT; }));
}

TEST(FileTypeFilter, UnknownAndEmptyIdentifiersAdmitNothing)
{
    for (const QStringList &identifiers : {QStringList(), QStringList(QString()), {u"org.example.x"_s}})
        EXPECT_FALSE(FileTypeFilter(identifiers, {}).admits("a.txt", [] { return TEXT; }));
    EXPECT_TRUE(FileTypeFilter({}, {u"*.[ch]"_s}).admits("A.H", [] { return DATA; }));
    EXPECT_FALSE(FileTypeFilter({}, {u"*.[ch]"_s}).admits("a.cc", [] { return TEXT; }));
}

TEST(WildcardPattern, MatchesTheWholeNameWithoutRegardToCase)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/wildcards.tsv"))
        EXPECT_EQ(matchesWildcardPattern(row.text(1), row.text(0)), row.flag(2)) << row.line;
}

TEST(WildcardPattern, ManyStarsOnALongNameStayQuick)
{
    EXPECT_FALSE(matchesWildcardPattern(QString(255, u'a'), u"*a"_s.repeated(60) + u'b'));
}

} // namespace
} // namespace tidemark::test
