#include "search/FileTypes.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

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
const QString SOURCE = u"content plain-text source-code text"_s;
const QString SCRIPT = u"content plain-text script source-code text"_s;
const QByteArray TEXT = "some words\n";
const QByteArray DATA("\x7F"
                      "ELF\x02\x00\x01",
                      7);

TEST(FileTypes, NameDecidesWhateverTheContent)
{
    const struct
    {
        const char *name;
        QString types;
    } cases[] = {
        {"a.txt", PLAIN},
        {"A.TXT", PLAIN},
        {"a.csv", PLAIN},
        {"a.md", PLAIN},
        {"a.c", SOURCE},
        {"a.C", SOURCE},
        {"a.hpp", SOURCE},
        {"\xFF\xFE.cpp", SOURCE},
        {"a.java", SOURCE},
        {"a.go", SOURCE},
        {"a.m", SOURCE},
        {"a.py", SCRIPT},
        {"a.sh", SCRIPT},
        {"a.js", SCRIPT},
        {"Makefile", SCRIPT},
        {"makefile.am", SCRIPT},
        {"CMakeLists.txt", SOURCE},
        {"cmakelists.TXT", SOURCE},
        {"a.json", u"content text"_s},
        {"a.html", u"content html text"_s},
        {"a.xml", u"content text xml"_s},
        {"a.svg", u"content image text xml"_s},
        {"a.rtf", u"content rtf text"_s},
        {"a.pdf", u"com.adobe.pdf content"_s},
        {"a.png", u"content image"_s},
        {"a.docx", u"content"_s},
        {"a.odt", u"content"_s},
        {"a.ps", u"content"_s},
        {"a.zip", u"archive"_s},
        {"a.txt.gz", u"archive"_s},
        {"a.tar.gz", u"archive"_s},
        {"a.1.TAR.GZ", u"archive"_s},
        // Not an archive but the picture that the two suffixes stand for together.
        {"a.svg.gz", u"content image"_s},
        {"a.eml", u""_s},
        {"liba.so.1.2", u""_s},
        {"a.txt~", u""_s},
        {"a.ttf", u""_s},
        {"README", PLAIN},
        {"readme.first", PLAIN},
        {"a.7", PLAIN},
        // The database knows none of these.
        {"a.ini", PLAIN},
        {"a.strings", PLAIN},
        {"a.R", SOURCE},
        {"a.swift", SOURCE},
        {"a.tsx", SOURCE},
        {"a.ps1", SCRIPT},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(furtherTypes(c.name, TEXT), c.types) << c.name;
        EXPECT_EQ(furtherTypes(c.name, DATA), c.types) << c.name;
    }
}

TEST(FileTypes, ContentDecidesWhereTheNameLeavesAChoice)
{
    const struct
    {
        const char *name;
        QString ifText;
        QString ifData;
    } cases[] = {
        {"noextension", PLAIN, u""_s},
        {"a.unheardof", PLAIN, u""_s},
        {"a.20240101", PLAIN, u""_s},
        {"a.", PLAIN, u""_s},
        {".png", PLAIN, u""_s},
        {"a.\xFF\xFE", PLAIN, u""_s},
        {"a.ts", SOURCE, u"content movie"_s},
        {"a.plist", PLAIN, u""_s},
        {"go.mod", PLAIN, u"audio content"_s},
        {"a.mo", SOURCE, u""_s},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(furtherTypes(c.name, TEXT), c.ifText) << c.name;
        EXPECT_EQ(furtherTypes(c.name, DATA), c.ifData) << c.name;
    }
}

TEST(FileTypes, WhatLooksLikeText)
{
    const struct
    {
        QByteArray content;
        bool isText;
    } cases[] = {
        {"plain", true},
        {"caf\xE9 in an old encoding", true},
        {"\t\n\v\f\r\b\x1B[1m", true},
        {QByteArray("", 0), false},
        {QByteArray("a\0b", 3), false},
        {"a\x01", false},
        {"a\x0E", false},
        {QByteArray(4095, 'a') + '\x02', false},
        {'\x02' + QByteArray(4095, 'a'), false},
        {QByteArray(4096, 'a'), true},
        {"\xEF\xBB\xBF", true},
        {QByteArray("\xFF\xFE"
                    "a\0",
                    4),
         true},
        {QByteArray("\xFE\xFF\0a", 4), true},
        {QByteArray("\0\0\xFE\xFF\0\0\0a", 8), true},
        {QByteArray("\xFF\xFE\0\0a\0\0\0", 8), true},
    };
    for (const auto &c : cases)
        EXPECT_EQ(furtherTypes("x", c.content), c.isText ? PLAIN : QString())
            << c.content.toHex().constData();
    EXPECT_EQ(furtherTypes("x", QByteArray()), PLAIN) << "can't be read";
}

struct CountedProbe
{
    QByteArray operator()() const
    {
        ++*count;
        return TEXT;
    }
    int *count;
};

TEST(FileTypeFilter, LooksIntoFilesOnlyWhereThatMatters)
{
    int probes = 0;
    const CountedProbe probe{&probes};
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
    const QList<QStringList> useless{{}, {QString()}, {u"org.example.x"_s}};
    for (const QStringList &identifiers : useless) {
        FileTypeFilter filter(identifiers, {});
        EXPECT_FALSE(filter.admits("a.txt", [] { return TEXT; }));
    }
    FileTypeFilter pattern({}, {u"*.[ch]"_s});
    EXPECT_TRUE(pattern.admits("A.H", [] { return DATA; }));
    EXPECT_FALSE(pattern.admits("a.cc", [] { return TEXT; }));
}

TEST(WildcardPattern, MatchesTheWholeNameWithoutRegardToCase)
{
    const struct
    {
        QString pattern;
        QString name;
        bool matches;
    } cases[] = {
        {u"*.txt"_s, u"a.TXT"_s, true},
        {u"*.txt"_s, u".txt"_s, true},
        {u"*.txt"_s, u"a.txt.gz"_s, false},
        {u"txt"_s, u"a.txt"_s, false},
        {u"*"_s, u""_s, true},
        {u""_s, u""_s, true},
        {u""_s, u"a"_s, false},
        {u"?"_s, u""_s, false},
        {u"a?c"_s, u"a\U0001F600c"_s, true},
        {u"*a*b"_s, u"aab ab"_s, true},
        {u"*a*b"_s, u"aab abc"_s, false},
        {u"**a"_s, u"ba"_s, true},
        {u"*.[ch]"_s, u"x.H"_s, true},
        {u"[A-F]x"_s, u"dX"_s, true},
        {u"[a-f]x"_s, u"Dx"_s, true},
        {u"[!a-f]"_s, u"D"_s, false},
        {u"[^a-f]"_s, u"g"_s, true},
        {u"[]x]"_s, u"]"_s, true},
        {u"[!]]"_s, u"]"_s, false},
        {u"[a-]"_s, u"-"_s, true},
        {u"[*]"_s, u"*"_s, true},
        {u"[*]"_s, u"a"_s, false},
        {u"a[b"_s, u"A[B"_s, true},
        {u"[]"_s, u"[]"_s, true},
        {u"É*"_s, u"e\u0301tude"_s, true},
        {u"ΣΑΣ"_s, u"σας"_s, true},
        {u"\\*"_s, u"\\x"_s, true},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(matchesWildcardPattern(c.name, c.pattern), c.matches)
            << c.pattern.toStdString() << " on " << c.name.toStdString();
    }
}

TEST(WildcardPattern, ManyStarsOnALongNameStayQuick)
{
    EXPECT_FALSE(matchesWildcardPattern(QString(255, u'a'), u"*a"_s.repeated(60) + u'b'));
}

} // namespace
} // namespace tidemark
