#include "session/ResultsExport.h"

#include "session/FindResults.h"
#include "support/ResultNodes.h"
#include "support/Testing.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>

namespace tidemark::test {

namespace {

QByteArray exported(ResultsFormat format, const FindResultItems &nodes,
                    const TDReplacement *replacement = nullptr)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(ResultsExport(format, replacement, buffer).write(nodes));
    return buffer.data();
}

const FindResultItems FILES = {fileNode("/t/a,\"b\"", {u"x foo, foo\n"_s, u"`foo` ``é\r\n"_s}),
                               failedFileNode("/t/failed", u"why"_s), fileNode("/t/\xFF", {u"foo"_s})};

TEST(ResultsExport, WritesEveryFormatOneMatchARow)
{
    EXPECT_EQ(exported(ResultsFormat::Text, filesAndLines(FILES)),
              "/t/a,\"b\":1:3:x foo, foo\n/t/a,\"b\":1:8:x foo, foo\n/t/a,\"b\":2:2:`foo` ``\xC3\xA9\n"
              "/t/\xFF:1:1:foo\n");
    EXPECT_EQ(exported(ResultsFormat::Csv, filesAndLines({fileNode("/t/c", {u"\f foo\n"_s})})).split('\n')[1],
              "/t/c,1,3,2,3,foo,\"\f foo\",,\r")
        << "positions stay true behind a form feed";
    EXPECT_EQ(exported(ResultsFormat::Paths, FILES), "/t/a,\"b\"\n/t/failed\n/t/\xFF\n");
    EXPECT_EQ(exported(ResultsFormat::Markdown, filesAndLines({FILES[0]})),
              "- `/t/a,\"b\"`\n  - 1: `x foo, foo`\n  - 2: ``` `foo` ``\xC3\xA9 ```\n");
    EXPECT_EQ(exported(ResultsFormat::Csv, filesAndLines({FILES[0]})),
              "\xEF\xBB\xBFpath,line,column,offset,length,match,text,encoding,replacement\r\n"
              "\"/t/a,\"\"b\"\"\",1,3,2,3,foo,\"x foo, foo\",,\r\n"
              "\"/t/a,\"\"b\"\"\",1,8,7,3,foo,\"x foo, foo\",,\r\n"
              "\"/t/a,\"\"b\"\"\",2,2,1,3,foo,`foo` ``\xC3\xA9,,\r\n");
}

TEST(ResultsExport, TellsWhatMatchesWouldBecome)
{
    const TemporaryFolder folder;
    const FindResultItems files = {fileNode(folder
                                                .write("a", "\xFF\xFE"
                                                            "f\0o\0o\0")
                                                .bytes(),
                                            {u"a foo\n"_s})};
    const TDReplacement replacement(u"foo"_s, u"\"bar\"\n"_s, FindOptions(),
                                    ReplacementExtent::EveryOccurrence);
    const QJsonObject row =
        QJsonDocument::fromJson(exported(ResultsFormat::JsonLines, files, &replacement)).object();
    EXPECT_EQ(row[u"replacement"_s].toString(), u"\"bar\"\n"_s);
    EXPECT_EQ(row[u"match"_s].toString(), u"foo"_s);
    EXPECT_EQ(row[u"column"_s].toInt(), 3);
    EXPECT_EQ(row[u"offset"_s].toInt(), 2);
}

TEST(ResultsExport, IsUtf8WhateverAFileIsCalled)
{
    const QByteArray csv = exported(ResultsFormat::Csv, filesAndLines({FILES[2]}));
    EXPECT_TRUE(QUtf8StringView(csv).isValidUtf8());
    const QByteArray json = exported(ResultsFormat::JsonLines, filesAndLines({FILES[2]}));
    EXPECT_EQ(QJsonDocument::fromJson(json).object()[u"pathBytes"_s].toString(), u"/t/%FF"_s);
}

TEST(ResultsExport, StopsAndTellsAFullDevice)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ResultsExport stopped(ResultsFormat::Paths, nullptr, buffer);
    EXPECT_FALSE(stopped.write(FILES, [](qsizetype files) { return files == 1; }));
    ResultsExport stoppedWithin(ResultsFormat::Text, nullptr, buffer);
    int asked = 0;
    const FindResultItems large = {fileNode("/t/large", QStringList(20000, u"foo\n"_s))};
    EXPECT_FALSE(stoppedWithin.write(large, [&asked](qsizetype) { return ++asked == 2; }));
    EXPECT_LT(buffer.size(), 1 << 17);
    buffer.close();
    buffer.open(QIODevice::ReadOnly);
    EXPECT_FALSE(ResultsExport(ResultsFormat::Paths, nullptr, buffer).write(FILES));
}

} // namespace

} // namespace tidemark::test
