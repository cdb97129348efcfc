#include "session/ResultsFilter.h"

#include "session/FindResults.h"
#include "support/ResultNodes.h"
#include "support/Testing.h"

#include <random>

namespace tidemark::test {

namespace {

/// "name:line,line" of what shows.
QString shown(const FindResults &results)
{
    QStringList files;
    for (const auto &file : results.files()) {
        EXPECT_EQ(results.files().value(file->position()), file);
        QStringList lines;
        for (const auto &line : file->children()) {
            EXPECT_TRUE(results.shows(*line));
            lines << QString::number(line->matchLine() != nullptr ? line->matchLine()->lineNumber() : 0);
        }
        files << file->path().displayText().section(u'/', -1) + u':' + lines.join(u',');
    }
    return files.join(u' ');
}

/// Lines that were found, as a search makes them, and one that was changed since.
FindResultItems someFiles()
{
    const auto other = fileNode("/home/kim/notes/harbour.md", {u"foo Ebb"_s, u"foo"_s, u"foo Straße"_s});
    return {fileNode("/home/kim/src/tide.cpp", {u"foo low\n"_s, u"foo EBB\n"_s, u"ebb foo\n"_s}), other,
            failedFileNode("/home/kim/src/gone.txt", u"No such file."_s)};
}

std::shared_ptr<const ResultsFilter> filterFor(const QString &text)
{
    return text.isEmpty()
               ? nullptr
               : std::make_shared<const ResultsFilter>(
                     text, QList<FilePath>{FilePath("/home/kim/src"), FilePath("/home/kim/notes")});
}

TEST(ResultsFilter, ShowsWhatHasTheTextInItsPathOrLine)
{
    const QString all = u"tide.cpp:1,2,3 harbour.md:1,2,3 gone.txt:0"_s;
    const std::pair<QString, QString> cases[] = {{u"ebb"_s, u"tide.cpp:2,3 harbour.md:1"_s},
                                                 {u"TIDE"_s, u"tide.cpp:1,2,3"_s},
                                                 {u"harb"_s, u"harbour.md:1,2,3"_s},
                                                 {u"such file"_s, u"gone.txt:0"_s},
                                                 {u"straß"_s, u"harbour.md:3"_s},
                                                 {u"nothing"_s, QString()},
                                                 {u"kim"_s, QString()},
                                                 {u"home"_s, QString()},
                                                 {u"foo"_s, u"tide.cpp:1,2,3 harbour.md:1,2,3"_s}};
    FindResults results;
    results.append(someFiles());
    for (const auto &[text, expected] : cases) {
        results.setFilter(filterFor(text));
        EXPECT_EQ(shown(results), expected) << qPrintable(text);
        EXPECT_EQ(results.countOfAll(), 3);
    }
    results.setFilter(nullptr);
    EXPECT_EQ(shown(results), all);
    // Those that arrive later are filtered as well.
    results.clear();
    results.setFilter(filterFor(u"ebb"_s));
    results.append(someFiles());
    EXPECT_EQ(shown(results), cases[0].second);
    results.setFilter(nullptr);
    EXPECT_EQ(shown(results), all);
}

TEST(ResultsFilter, WhatIsHiddenIsNotRemoved)
{
    struct Case
    {
        const char *name;
        void (*remove)(FindResults &results);
        QString shown;
        QString all;
    };
    const Case cases[] = {
        {"a line", [](FindResults &results) { results.remove({results.files()[0]->children()[0]}); },
         u"tide.cpp:3 harbour.md:1"_s, u"tide.cpp:1,3 harbour.md:1,2,3 gone.txt:0"_s},
        {"a file that shows in part", [](FindResults &results) { results.remove({results.files()[0]}); },
         u"harbour.md:1"_s, u"tide.cpp:1 harbour.md:1,2,3 gone.txt:0"_s},
        {"everything that shows",
         [](FindResults &results) { results.remove(filesAndLines(results.files())); },
         {},
         u"tide.cpp:1 harbour.md:2,3 gone.txt:0"_s},
        {"a file that shows as a whole",
         [](FindResults &results) {
             results.setFilter(filterFor(u"tide"_s));
             results.remove({results.files()[0]});
         },
         {},
         u"harbour.md:1,2,3 gone.txt:0"_s}};
    for (const Case &removal : cases) {
        FindResults results;
        results.append(someFiles());
        results.setFilter(filterFor(u"ebb"_s));
        removal.remove(results);
        EXPECT_EQ(shown(results), removal.shown) << removal.name;
        results.setFilter(nullptr);
        EXPECT_EQ(shown(results), removal.all) << removal.name;
    }
}

TEST(ResultsFilter, KnowsEveryCaseOfALetter)
{
    const auto node = TDFindResultItem::initWithFile(FilePath("/t/a"), {}, {}, false);
    const std::pair<QString, QByteArray> cases[] = {{u"kelvin"_s, "5 \xE2\x84\xAA"
                                                                  "elvin"},
                                                    {u"ask"_s, "a\xC5\xBF"
                                                               "k"},
                                                    {u"STRASSE"_s, "stra\xC5\xBF"
                                                                   "se"}};
    for (const auto &[text, line] : cases) {
        const auto found = std::make_shared<TDMatchLine>(1, line, std::span<const TextRange>());
        const auto shown =
            filterFor(text)->shownLines({{node, {TDFindResultItem::initWithMatchLine(found, node.get())}}});
        EXPECT_EQ(shown.front(), std::nullopt) << qPrintable(text);
    }
}

/// Those are looked at in pieces.
TEST(ResultsFilter, ManyLinesShowAsFewDo)
{
    std::mt19937 random(7);
    FindResults results;
    QList<QList<qint64>> expected;
    FindResultItems files;
    for (const int count : {40000, 3, 16384, 16385, 1, 20000}) {
        QStringList lines;
        QList<qint64> withText;
        for (int line = 1; line <= count; ++line) {
            const bool hasText = count == 20000 || (random() % 1000 < 500 && count != 3);
            lines << (hasText ? u"foo ebb"_s : u"foo"_s);
            if (hasText)
                withText << line;
        }
        files << fileNode("/home/kim/src/a", lines);
        if (!withText.isEmpty())
            expected << withText;
    }
    results.append(files);
    results.setFilter(filterFor(u"ebb"_s));
    ASSERT_EQ(results.count(), expected.size());
    for (qsizetype index = 0; index < expected.size(); ++index) {
        QList<qint64> numbers;
        for (const auto &line : results.files()[index]->children())
            numbers << line->matchLine()->lineNumber();
        EXPECT_EQ(numbers, expected[index]);
    }
}

TEST(AsciiFinder, FindsWhatALookAtEachPlaceFinds)
{
    std::mt19937 random(3);
    const QByteArray letters("aAbB.\xC3\xA4 ");
    const auto text = [&](qsizetype length, qsizetype kinds) {
        QByteArray bytes;
        while (bytes.size() < length)
            bytes += letters[qsizetype(random()) % kinds];
        return bytes;
    };
    int found = 0;
    for (int count = 0; count < 20000; ++count) {
        const QByteArray needle = text(1 + qsizetype(random()) % 5, 5);
        const QByteArray bytes = text(qsizetype(random()) % 70, letters.size());
        const bool expected = bytes.toLower().contains(needle.toLower());
        EXPECT_EQ(AsciiFinder(needle).isIn(bytes), expected)
            << needle.constData() << " in " << bytes.constData();
        found += expected ? 1 : 0;
    }
    EXPECT_GT(found, 2000);
    EXPECT_LT(found, 18000);
}

} // namespace

} // namespace tidemark::test
