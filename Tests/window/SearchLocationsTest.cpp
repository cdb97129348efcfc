#include "support/gui/WindowFixture.h"

#include "window/locations/FilesAndFoldersPanel.h"
#include "window/locations/PathControlWithPathBinding.h"
#include "window/locations/SearchLocationsController.h"
#include "window/locations/TDTableViewDragDropArrayController.h"

#include <QAbstractItemModelTester>
#include <QFontMetrics>
#include <QLineEdit>

#include <unistd.h>

namespace tidemark::test {

namespace {

class SearchLocationsTest : public WindowTest
{
protected:
    SearchLocationsTest()
    {
        model.setDropFilesReceiver([this](const QList<FilePath> &paths) { controller.dropFiles(paths); });
    }

    FilePath link(const QByteArray &name, const FilePath &target) const
    {
        EXPECT_EQ(symlink(target.cString(), folder.path(name).cString()), 0);
        return folder.path(name);
    }
    static std::unique_ptr<QMimeData> filesToDrop(const QList<FilePath> &paths)
    {
        auto data = std::make_unique<QMimeData>();
        QList<QUrl> urls;
        for (const FilePath &path : paths)
            urls << path.toUrl();
        data->setUrls(urls);
        return data;
    }
    QByteArray names() const
    {
        QByteArrayList names;
        for (const TDSearchLocation &each : document.searchLocations())
            names << each.path().lastPathComponent();
        return names.join(' ');
    }
    void addNumbered(int count)
    {
        for (int number = 0; number < count; ++number)
            controller.addSearchLocationToArrayController(
                folder.write(QByteArray::number(number), "").toUrl());
    }

    MyDocument document;
    SearchLocationsController controller{document};
    TDTableViewDragDropArrayController model{document};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SearchLocationsTest, FoldersAreAddedWithTheirSubfoldersEachItemOnce)
{
    const FilePath inner = folder.makeFolder("inner");
    const FilePath file = folder.write("file.txt", "");
    controller.addSearchLocations({inner.toUrl(), file.toUrl(), inner.toUrl(),
                                   FilePath(inner.bytes() + '/').toUrl(), link("link", file).toUrl(),
                                   FilePath(link("linked", inner).bytes() + "/x").toUrl()});
    // What doesn't exist goes through no link as far as anyone can tell.
    EXPECT_EQ(names(), "inner file.txt x");
    EXPECT_TRUE(document.searchLocations()[0].isFolder && document.searchLocations()[0].includeSubFolders);
    EXPECT_FALSE(document.searchLocations()[1].isFolder || document.searchLocations()[1].includeSubFolders);
    EXPECT_TRUE(controller.isFileInSearchLocationsForPath(file));
    EXPECT_FALSE(controller.isFileInSearchLocationsForPath(inner));
    EXPECT_FALSE(controller.isFileInSearchLocationsForPath(FilePath(file.bytes() + ' ')));
}

TEST_F(SearchLocationsTest, DropsAreShownForWhatTheyWouldDo)
{
    const FilePath file = folder.write("file", "");
    const FilePath alias = link("link", file);
    const auto rows = std::unique_ptr<QMimeData>(model.writeRows({0}));
    const auto links = filesToDrop({alias});
    const auto mixed = filesToDrop({alias, file});
    QMimeData text;
    text.setText(u"text"_s);
    const std::tuple<const char *, const QMimeData *, DragSource, DragOperation, DropOperation> cases[] = {
        {"own rows", rows.get(), DragSource::SameTable, DragOperation::Move, DropOperation::Above},
        {"another table's rows", rows.get(), DragSource::Elsewhere, DragOperation::None, DropOperation::On},
        {"files", mixed.get(), DragSource::Elsewhere, DragOperation::Copy, DropOperation::Above},
        {"links only", links.get(), DragSource::Elsewhere, DragOperation::None, DropOperation::Above},
        {"text", &text, DragSource::Elsewhere, DragOperation::None, DropOperation::On},
    };
    for (const auto &[what, data, source, operation, dropOperation] : cases) {
        const ProposedDrop drop = model.validateDrop(*data, source, 2, DropOperation::On);
        EXPECT_EQ(drop.operation, operation) << what;
        EXPECT_EQ(drop.dropOperation, dropOperation) << what;
        EXPECT_EQ(drop.row, 2) << what;
    }
}

TEST_F(SearchLocationsTest, DroppedFilesAreAppendedUnlessASearchRuns)
{
    addNumbered(2);
    const FilePath file = folder.write("file", "");
    const auto data = filesToDrop({link("link", file), file, folder.path("0")});
    controller.setAcceptsDrops(false);
    EXPECT_TRUE(model.dropMimeData(data.get(), Qt::CopyAction, 0, 0, {}));
    EXPECT_EQ(names(), "0 1");
    controller.setAcceptsDrops(true);
    EXPECT_TRUE(model.dropMimeData(data.get(), Qt::CopyAction, 0, 0, {}));
    EXPECT_EQ(names(), "0 1 file");
}

TEST_F(SearchLocationsTest, RowsAreMovedInTheirOrder)
{
    const std::tuple<QList<int>, int, const char *> cases[] = {
        {{0, 1}, 3, "2 0 1 3"}, {{3, 1}, 0, "1 3 0 2"}, {{0, 3}, 2, "1 0 3 2"},
        {{2}, 2, "0 1 2 3"},    {{0}, 4, "1 2 3 0"},    {{0, 1, 2, 3}, 2, "0 1 2 3"}};
    addNumbered(4);
    const QList<TDSearchLocation> original = document.searchLocations();
    for (const auto &[moved, to, expected] : cases) {
        document.setSearchLocations(original);
        const auto data = std::unique_ptr<QMimeData>(model.writeRows(moved));
        EXPECT_TRUE(model.acceptDrop(*data, DragSource::SameTable, to));
        EXPECT_EQ(names(), expected);
    }
    QMimeData damaged;
    damaged.setData(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM, "\xFF\xFF\xFF\xFFgarbage");
    model.acceptDrop(damaged, DragSource::SameTable, 1);
    EXPECT_EQ(names(), "0 1 2 3");
}

TEST_F(SearchLocationsTest, OnlyFoldersHaveATickWhichGoesToTheDocument)
{
    addNumbered(1);
    controller.addSearchLocationToArrayController(folder.makeFolder("inner").toUrl());
    const QModelIndex fileTick = model.index(0, 1);
    const QModelIndex folderTick = model.index(1, 1);
    EXPECT_FALSE(model.setData(fileTick, Qt::Checked, Qt::CheckStateRole));
    EXPECT_FALSE(fileTick.data(Qt::CheckStateRole).isValid());
    EXPECT_TRUE(model.setData(folderTick, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(document.searchLocations()[1].includeSubFolders);
    model.removeRowsAt({1, 0});
    EXPECT_EQ(names(), "");
}

TEST_F(SearchLocationsTest, ThePanelTakesWhatWasTypedAndNothingPassedOnTheWay)
{
    folder.write("outer/inner/file.txt", "");
    FilesAndFoldersPanel panel;
    QList<QUrl> chosen;
    QObject::connect(&panel, &FilesAndFoldersPanel::chosen,
                     [&chosen](const QList<QUrl> &urls) { chosen = urls; });
    panel.setAttribute(Qt::WA_DeleteOnClose, false);
    panel.open();
    auto *fileName = panel.findChild<QLineEdit *>();
    ASSERT_NE(fileName, nullptr);
    const auto type = [&](const FilePath &path) {
        fileName->clear();
        QTest::keyClicks(fileName, path.displayText());
        QCoreApplication::processEvents();
        panel.accept();
    };
    type(folder.path("outer/missing"));
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(chosen.isEmpty());
    type(folder.path("outer/inner"));
    EXPECT_EQ(chosen, QList<QUrl>{folder.path("outer/inner").toUrl()});
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(SearchLocationsTest, ALongPathLosesItsMiddleFirst)
{
    const QFontMetrics metrics((QFont()));
    const FilePath path("/home/anna/a rather long folder/another long folder/notes.txt");
    const QString whole = u"home › anna › a rather long folder › another long folder › notes.txt"_s;
    const int width = metrics.horizontalAdvance(whole);
    EXPECT_EQ(PathControlWithPathBinding::breadcrumb(path, metrics, width), whole);
    const QString shorter = PathControlWithPathBinding::breadcrumb(path, metrics, width - 1);
    EXPECT_TRUE(shorter.startsWith(u"home › "_s)) << shorter.toStdString();
    EXPECT_TRUE(shorter.endsWith(u"› notes.txt"_s)) << shorter.toStdString();
    EXPECT_TRUE(shorter.contains(u"› … ›"_s)) << shorter.toStdString();
    for (int room = 0; room < width; room += 7)
        EXPECT_LE(metrics.horizontalAdvance(PathControlWithPathBinding::breadcrumb(path, metrics, room)),
                  room);
    EXPECT_EQ(PathControlWithPathBinding::breadcrumb(FilePath("/"), metrics, 10), u"/"_s);
}

} // namespace

} // namespace tidemark::test
