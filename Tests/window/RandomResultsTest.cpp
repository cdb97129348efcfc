#include "session/ResultsFilter.h"
#include "window/ResultsFixture.h"
#include "window/results/ResultsFilterBox.h"

#include <QAbstractItemModelTester>

#include <algorithm>
#include <random>
#include <vector>

namespace tidemark::test {

namespace {

const QString LOW = u"foo low"_s;

/// What a window is to show, kept in the plainest way.
class ShownByDefinition
{
public:
    struct File
    {
        std::shared_ptr<TDFindResultItem> node;
        FindResultItems lines;
        QSet<const TDFindResultItem *> hidden;

        bool isShown() const { return qsizetype(hidden.size()) < lines.size(); }
        FindResultItems shownLines() const
        {
            FindResultItems shown = lines;
            shown.removeIf([this](const auto &line) { return hidden.contains(line.get()); });
            return shown;
        }
    };

    void filterAll()
    {
        for (File &file : files) {
            file.hidden.clear();
            filter(file, file.lines);
        }
    }
    void filter(File &file, const FindResultItems &lines) const
    {
        if (file.node->path().displayText().mid(3).contains(text, Qt::CaseInsensitive))
            return;
        for (const auto &line : lines) {
            if (!line->matchLine()->matchLineString().contains(text, Qt::CaseInsensitive))
                file.hidden.insert(line.get());
        }
    }
    void remove(const FindResultItems &nodes)
    {
        for (const auto &node : nodes) {
            for (File &file : files) {
                const FindResultItems gone = file.node == node ? file.shownLines() : FindResultItems{node};
                file.lines.removeIf([&gone](const auto &line) { return gone.contains(line); });
            }
        }
        std::erase_if(files, [](const File &file) { return file.lines.isEmpty(); });
    }
    /// In the order of the column; -1: of arrival.
    std::vector<File> shown(int column, Qt::SortOrder order) const
    {
        std::vector<File> shown;
        std::copy_if(files.begin(), files.end(), std::back_inserter(shown),
                     [](const File &file) { return file.isShown(); });
        const auto key = [column](const File &file) {
            return column == ResultsTreeModel::NameColumn ? file.node->filenameMatchLineSortKey()
                                                          : file.node->displayPath();
        };
        if (column >= 0)
            std::stable_sort(shown.begin(), shown.end(), [&](const File &left, const File &right) {
                return order == Qt::AscendingOrder ? key(left) < key(right) : key(right) < key(left);
            });
        return shown;
    }

    std::vector<File> files;
    QString text; ///< of the filter
};

class RandomResultsTest : public WindowTest
{
public:
    int below(int limit) { return int(random() % unsigned(limit)); }
    QStringList someLines()
    {
        QStringList lines;
        for (int left = 1 + below(4); left > 0; --left)
            lines << (below(2) == 0 ? LOW : u"a foo High foo"_s) + QString::number(below(3));
        return lines;
    }
    ShownByDefinition::File newFile()
    {
        const QByteArray path = "/t/d" + QByteArray::number(below(3)) + "/f" + QByteArray::number(++made);
        const auto node = fileNode(path, someLines());
        return {node, node->children(), {}};
    }

    void append()
    {
        FindResultItems nodes;
        for (int left = 1 + below(3); left > 0; --left) {
            oracle.files.push_back(newFile());
            ShownByDefinition::File &file = oracle.files.back();
            oracle.filter(file, file.lines);
            nodes << file.node;
        }
        window->results.append(nodes);
    }
    void addPart()
    {
        if (oracle.files.empty())
            return;
        ShownByDefinition::File &file = oracle.files[size_t(below(int(oracle.files.size())))];
        const auto other = fileNode("/t/other", someLines());
        const bool isMore = below(3) > 0;
        FoundPart part{file.node, isMore ? FoundPart::Kind::More : FoundPart::Kind::Instead,
                       other->children(), *other->matches()};
        for (const auto &line : other->children())
            line->setParent(file.node.get());
        file.lines = isMore ? file.lines + part.children : part.children;
        oracle.filter(file, part.children);
        if (file.isShown() != window->results.shows(*file.node) || !isMore)
            oracle.filterAll();
        window->results.add(part);
    }
    void filter()
    {
        const QString texts[] = {{}, {}, LOW, u"HIGH"_s, u"foo"_s, u"1"_s, u"d2/"_s, u"f1"_s, u"bar"_s};
        oracle.text = texts[below(int(std::size(texts)))];
        oracle.filterAll();
        window->results.setFilter(oracle.text.isEmpty() ? nullptr
                                                        : std::make_shared<const ResultsFilter>(
                                                              oracle.text, QList<FilePath>{FilePath("/t")}));
    }
    void selectAndRemove()
    {
        for (int left = below(12); left > 0; --left)
            window->view.selectRow(below(window->view.numberOfRows() + 1), true);
        if (below(2) == 0) {
            oracle.remove(window->navigation.selection().selectedObjects());
            window->navigation.removeSelected();
        }
    }
    void replace()
    {
        if (window->model.rowCount() == 0)
            return;
        const auto file = window->model.file(below(window->model.rowCount()));
        const TDReplacement replacement(u"foo"_s, u"bar"_s, {}, ReplacementExtent::EveryOccurrence);
        TDError error;
        for (const auto &line : file->children()) {
            if (below(2) == 0)
                (void)replaceMatches(
                    *line->matchLine(), replacement, [] { return false; }, error);
        }
        if (below(2) == 0)
            window->model.noteFileChanged(*file);
        else
            window->model.noteAllChanged();
    }
    void arrange()
    {
        const int columns[] = {-1, ResultsTreeModel::NameColumn, ResultsTreeModel::FolderColumn};
        if (below(3) == 0) {
            column = columns[below(3)];
            order = below(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
            window->model.sort(column, order);
        }
        window->view.toggleExpanded(window->model.index(below(window->model.rowCount() + 1), 0));
        window->navigation.moveToNextMatch();
    }

    void compare()
    {
        const auto shown = oracle.shown(column, order);
        ASSERT_EQ(window->model.rowCount(), int(shown.size()));
        int row = 0;
        for (int number = 0; number < int(shown.size()); ++number) {
            const auto &[file, lines, hidden] = shown[size_t(number)];
            ASSERT_EQ(window->model.file(number), file);
            ASSERT_EQ(file->children(), shown[size_t(number)].shownLines());
            ASSERT_EQ(window->view.itemAtRow(row++), file);
            qint32 count = 0;
            for (const auto &line : file->children()) {
                count += qint32(line->matchLine()->numberOfMatches());
                if (window->view.isExpanded(window->model.index(number, 0))) {
                    ASSERT_EQ(window->view.itemAtRow(row++), line);
                }
            }
            ASSERT_EQ(window->model.index(number, 1).data().toString(), QString::number(count));
        }
        ASSERT_EQ(window->view.numberOfRows(), row);
        ASSERT_EQ(window->results.countOfAll(), qsizetype(oracle.files.size()));
        if (!oracle.text.isEmpty()) {
            ASSERT_TRUE(window->controller().resultsPane().filterBox().countText().startsWith(
                u"%1 of %2 file"_s.arg(shown.size()).arg(oracle.files.size())));
        }
        (void)window->highlighted();
        (void)window->selection();
        // What is kept for drawing is what would be drawn anew.
        const auto drawn = [this] {
            QCoreApplication::processEvents();
            return window->view.viewport()->grab().toImage();
        };
        const QImage kept = drawn();
        window->view.setPreview(nullptr);
        ASSERT_EQ(kept, drawn());
    }

    std::mt19937 random;
    int made = 0;
    ShownByDefinition oracle;
    int column = -1;
    Qt::SortOrder order = Qt::AscendingOrder;
    std::unique_ptr<ResultsWindow> window;
};

TEST_F(RandomResultsTest, WhatShowsIsWhatTheDefinitionSays)
{
    using Step = void (RandomResultsTest::*)();
    const std::pair<const char *, Step> steps[] = {
        {"append", &RandomResultsTest::append},   {"part", &RandomResultsTest::addPart},
        {"filter", &RandomResultsTest::filter},   {"remove", &RandomResultsTest::selectAndRemove},
        {"replace", &RandomResultsTest::replace}, {"arrange", &RandomResultsTest::arrange}};
    bool isNumber = false;
    const int given = qEnvironmentVariableIntValue("TIDEMARK_ORACLE_CASES", &isNumber);
    for (unsigned seed = 0; seed < unsigned(isNumber ? given : 3); ++seed) {
        random.seed(seed);
        oracle = {};
        column = -1;
        window = std::make_unique<ResultsWindow>(application);
        // Where it comes and goes, rows are narrower and wider.
        window->view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        const QAbstractItemModelTester tester(&window->model,
                                              QAbstractItemModelTester::FailureReportingMode::Fatal);
        for (int number = 0; number < 60; ++number) {
            const auto &[name, step] = steps[below(int(std::size(steps)))];
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << number << ": " << name);
            (this->*step)();
            ASSERT_NO_FATAL_FAILURE(compare());
        }
    }
}

} // namespace

} // namespace tidemark::test
