#include "session/OutlineRows.h"
#include "window/ResultsFixture.h"
#include "window/results/FolderTexts.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <random>

namespace tidemark::test {

namespace {

FindResultItems threeFiles()
{
    return {fileNode("/z/b.txt", {u"foo\n"_s, u"foo foo\n"_s}),
            fileNode("/y/c.txt", {u"foo foo foo foo\n"_s}), fileNode("/x/a.txt", {u"foo\n"_s})};
}

QStringList names(const ResultsTreeModel &model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << model.index(row, 0).data().toString();
    return names;
}

TEST(ResultsTreeModel, KeepsTheRulesOfModelsThroughAllChanges)
{
    FindResults results;
    ResultsTreeModel model(results);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    results.append(threeFiles());
    results.append({failedFileNode("/x/d.txt", u"No such encoding"_s)});
    const QPersistentModelIndex second = model.index(1, 0, model.index(0, 0));
    model.sort(ResultsTreeModel::MatchesColumn, Qt::DescendingOrder);
    EXPECT_EQ(names(model), QStringList({u"c.txt"_s, u"b.txt"_s, u"a.txt"_s, u"d.txt"_s}));
    EXPECT_EQ(second.parent().data().toString(), u"b.txt"_s);
    results.append({fileNode("/w/e.txt", {u"foo foo\n"_s})});
    EXPECT_EQ(names(model).value(2), u"e.txt"_s);
    results.remove({results.files()[0]->children()[0], results.files()[1]});
    EXPECT_EQ(names(model), QStringList({u"b.txt"_s, u"e.txt"_s, u"a.txt"_s, u"d.txt"_s}));
    model.sort(-1);
    EXPECT_EQ(names(model), QStringList({u"b.txt"_s, u"a.txt"_s, u"d.txt"_s, u"e.txt"_s}));
    model.noteAllChanged();
    results.clear();
    EXPECT_EQ(model.rowCount(), 0);
}

/// A further part of a file with these lines.
FoundPart partOf(const std::shared_ptr<TDFindResultItem> &file, FoundPart::Kind kind,
                 const QStringList &lines)
{
    const auto other = fileNode(file->path().bytes(), lines);
    for (const auto &child : other->children())
        child->setParent(file.get());
    return {file, kind, other->children(), *other->matches()};
}

TEST(ResultsTreeModel, AFileGrowsWhereverItStandsAndWhateverBecameOfIt)
{
    FindResults results;
    ResultsTreeModel model(results);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const FindResultItems files = threeFiles();
    results.append(files);
    model.sort(ResultsTreeModel::MatchesColumn, Qt::DescendingOrder);
    const auto add = [&](int file, FoundPart::Kind kind, const QStringList &lines) {
        results.add(partOf(files[file], kind, lines));
    };
    add(2, FoundPart::Kind::More, {u"foo foo\n"_s, u"foo foo foo\n"_s});
    EXPECT_EQ(names(model), QStringList({u"a.txt"_s, u"c.txt"_s, u"b.txt"_s}));
    EXPECT_EQ(model.index(0, ResultsTreeModel::MatchesColumn).data().toString(), u"6"_s);
    EXPECT_EQ(files[2]->children()[2]->position(), 2);
    results.remove({files[2]->children()[0], files[1]});
    add(2, FoundPart::Kind::More, {u"foo\n"_s});
    add(1, FoundPart::Kind::More, {u"foo\n"_s});
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 3);

    add(2, FoundPart::Kind::Instead, {u"foo\n"_s});
    EXPECT_EQ(model.rowCount(model.indexOf(files[2].get())), 1);
    const auto error = TDFindResultItem::initWithError(TDError::posixError(5), files[2].get());
    results.add({files[2], FoundPart::Kind::Instead, {error}, {}});
    EXPECT_EQ(files[2]->matches(), nullptr);
    EXPECT_EQ(model.item(model.index(0, 0, model.indexOf(files[2].get()))), error);
    results.add({files[0], FoundPart::Kind::Instead, {}, {}});
    EXPECT_EQ(names(model), QStringList({u"a.txt"_s}));
}

TEST(ResultsTreeModel, ARemarkStandsInPlaceOfTheFolderAndIsSpoken)
{
    FindResults results;
    ResultsTreeModel model(results);
    results.append(threeFiles());
    model.file(0)->setRemark(u"No permission"_s);
    model.file(2)->setRemark(u"Not there"_s);
    model.sort(ResultsTreeModel::NameColumn);
    const auto folders = [&model] {
        QStringList shown;
        for (int row = 0; row < model.rowCount(); ++row)
            shown << model.index(row, ResultsTreeModel::FolderColumn).data().toString();
        return shown.join(u' ');
    };
    EXPECT_EQ(folders(), u"Not there No permission /y"_s);
    const QModelIndex remarked = model.index(1, 0);
    EXPECT_TRUE(remarked.data(Qt::ToolTipRole).toString().contains(u"No permission"_s));
    EXPECT_EQ(remarked.data(Qt::AccessibleTextRole).toString(), u"b.txt, 3 matches. No permission"_s);
    EXPECT_EQ(remarked.data(Qt::AccessibleDescriptionRole).toString(), u"/z"_s);
    const QVariant color = model.index(1, ResultsTreeModel::FolderColumn).data(Qt::ForegroundRole);
    EXPECT_TRUE(color.isValid());
    model.file(1)->setRemark({});
    EXPECT_EQ(folders(), u"Not there /z /y"_s);
}

TEST(ResultsTreeModel, ShowsNamesCountsAndFolders)
{
    FindResults results;
    ResultsTreeModel model(results);
    results.append(
        {fileNode("/z/caf\xE9.c", {u"\tfoo foo\n"_s}), failedFileNode("/a/bad", u"Why it failed"_s)});
    const auto shown = [&model](int row, int column, const QModelIndex &file = {}) {
        return model.index(row, column, file).data().toString();
    };
    EXPECT_EQ(shown(0, 0), u"caf\uFFFD.c"_s);
    EXPECT_EQ(shown(0, 1), u"2"_s);
    EXPECT_EQ(shown(0, 2), u"/z"_s);
    EXPECT_EQ(shown(1, 1), QString());
    EXPECT_EQ(shown(0, 0, model.index(0, 0)), u"1: \u2022foo foo"_s);
    EXPECT_EQ(shown(0, 0, model.index(1, 0)), u"Why it failed"_s);
}

TEST(ResultsTreeModel, FoldersBelowTheHomeAreShort)
{
    const std::tuple<const char *, QString, QString> cases[] = {
        {"/home/someone", u"/home/someone/src"_s, u"~/src"_s},
        {"/home/someone", u"/home/someone"_s, u"~"_s},
        {"/home/someone", u"/home/someone-else"_s, u"/home/someone-else"_s},
        {"/", u"/"_s, u"/"_s},
        {nullptr, u"/"_s, u"/"_s},
        {nullptr, u"/src"_s, u"/src"_s},
    };
    const bool hadHome = qEnvironmentVariableIsSet("HOME");
    const QByteArray homeBefore = qgetenv("HOME");
    for (const auto &[home, folder, shown] : cases) {
        if (home != nullptr)
            qputenv("HOME", home);
        else
            qunsetenv("HOME");
        EXPECT_EQ(folderForPeople(folder), shown) << (home != nullptr ? home : "no home");
    }
    if (hadHome)
        qputenv("HOME", homeBefore);
    else
        qunsetenv("HOME");
}

TEST(FindResults, AnnouncesBatchesAndRunsAndKeepsPositions)
{
    FindResults results;
    QSignalSpy appended(&results, &FindResults::appended);
    QSignalSpy removed(&results, &FindResults::removed);
    QSignalSpy thinnedOut(&results, &FindResults::thinnedOut);
    FindResultItems files;
    for (int number = 0; number < 200; ++number)
        files << fileNode("/f", {u"foo"_s, u"foo"_s});
    results.append(files);
    EXPECT_EQ(appended.count(), 1);
    results.remove({files[3], files[4], files[5], files[9], files[9]->children()[0]});
    EXPECT_EQ(removed.count(), 2);
    FindResultItems scattered;
    for (int number = 10; number < 200; number += 2)
        scattered << files[number]->children()[0] << files[number + 1];
    results.remove(scattered);
    EXPECT_EQ(thinnedOut.count(), 1);
    EXPECT_EQ(results.count(), 196 - 95);
    for (qsizetype position = 0; position < results.count(); ++position)
        EXPECT_EQ(results.files()[position]->position(), position);
    EXPECT_EQ(files[10]->children().size(), 1);
    EXPECT_EQ(files[10]->children()[0]->position(), 0);
}

TEST(OutlineRows, AgreesWithCountingOneByOne)
{
    OutlineRows rows;
    std::vector<int> lines;
    std::mt19937 random(7);
    for (int file = 0; file < 100; ++file) {
        lines.push_back(int(random() % 4));
        rows.appendFile(lines.back());
    }
    for (int change = 0; change < 50; ++change) {
        const int file = int(random() % 100);
        lines[size_t(file)] = int(random() % 4);
        rows.setShownLines(file, lines[size_t(file)]);
    }
    int row = 0;
    for (int file = 0; file < 100; ++file) {
        EXPECT_EQ(rows.rowOfFile(file), row);
        for (int line = -1; line < lines[size_t(file)]; ++line)
            EXPECT_EQ(rows.place(row++), (OutlineRows::Place{file, line}));
    }
    EXPECT_EQ(rows.rowCount(), row);
}

} // namespace

} // namespace tidemark::test
