#include "window/ResultsFixture.h"

#include "foundation/TDFileCommon.h"
#include "reading/TDStringEncoding.h"

#include <gtest/gtest.h>

#include <QLayout>
#include <QTest>
#include <QVBoxLayout>

namespace tidemark::test {

namespace {

constexpr int LONGEST_WAIT = 10000;

FindResultItems lineNodes(TDFindResultItem *file, const MatchLines &lines)
{
    FindResultItems items;
    for (const auto &line : lines)
        items << TDFindResultItem::initWithMatchLine(line, file);
    return items;
}

} // namespace

std::shared_ptr<TDFindResultItem> fileNode(const QByteArray &path, const QStringList &lines)
{
    auto file = TDFindResultItem::initWithFile(FilePath(path), {}, QStringLiteral("foo"), false);
    MatchLines matchLines;
    for (const QString &text : lines) {
        auto line = std::make_shared<TDMatchLine>();
        line->setMatchLineString(text);
        line->setLineNumber(matchLines.size() + 1);
        for (qsizetype found = text.indexOf(QLatin1String("foo")); found >= 0;
             found = text.indexOf(QLatin1String("foo"), found + 3))
            line->appendMatchRange({found, 3});
        matchLines << line;
    }
    auto highlighter = std::make_shared<TDMatchLineHighlighter>();
    highlighter->setMatchLines(matchLines);
    file->setMatchLineHighlighter(highlighter);
    file->setMatchLines(lineNodes(file.get(), matchLines));
    return file;
}

std::shared_ptr<TDFindResultItem> failedFileNode(const QByteArray &path, const QString &reason)
{
    const TDError error =
        TDError::initalizePresentErrorWithCode(TD_ERROR_CODE_TD_FILE_READER_FILE_ENCODING_ERROR,
                                               QStringLiteral("The file couldn't be searched."), reason);
    return TDFindResultItem::initWithFailedFile(FilePath(path), {}, error);
}

std::shared_ptr<TDFindResultItem> searchedFile(const FilePath &path, const QString &findText)
{
    auto highlighter = std::make_shared<TDMatchLineHighlighter>();
    auto file =
        TDFindResultItem::initWithFile(path, TDFileCommon::fileModificationDate(path), findText, false);
    TDError error;
    EXPECT_TRUE(
        highlighter->processWithFile(path, TDStringEncoding::userDefaultsEncoding(), error, false, findText));
    file->setIncludesBOM(highlighter->includesBOM());
    file->setMatchLineHighlighter(highlighter);
    file->setMatchLines(lineNodes(file.get(), highlighter->matchLines()));
    return file;
}

ResultsWindow::ResultsWindow(const FindResultItems &files) : model(results)
{
    ResultsNavigation::setShowHideState(false);
    ReplaceCommands::setSuppressAlertReplaceSelection(false);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(&view);
    view.setModel(&model);
    view.setOutlineDelegate(this);
    navigation = std::make_unique<ResultsNavigation>(results, model, view);
    commands = std::make_unique<ReplaceCommands>(
        model, view, *navigation,
        ReplaceContext{[this] { return findText; }, [this] { return replaceText; },
                       [](const FilePath &) { return false; }, [this] { ++busyCount; },
                       [this] { --busyCount; }});
    results.append(files);
    window.resize(640, 400);
    window.show();
    window.activateWindow();
    view.setFocus();
    EXPECT_TRUE(waitUntil([this] { return view.hasFocus(); }));
}

QString ResultsWindow::selection() const
{
    QStringList rows;
    for (const auto &item : navigation->selectedObjects()) {
        const QModelIndex index = model.indexOf(item.get());
        const QModelIndex file = index.parent();
        rows << (file.isValid() ? QStringLiteral("%1:%2").arg(file.row()).arg(index.row())
                                : QString::number(index.row()));
    }
    return rows.join(QLatin1Char(' '));
}

QString ResultsWindow::highlighted() const
{
    QStringList found;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (const auto &item : model.file(row)->children()) {
            if (item->matchLine() != nullptr && item->matchLine()->highlightedMatchIndex() >= 0)
                found << QStringLiteral("%1:%2:%3")
                             .arg(row)
                             .arg(item->position())
                             .arg(item->matchLine()->highlightedMatchIndex());
        }
    }
    EXPECT_LE(found.size(), 1);
    return found.isEmpty() ? QStringLiteral("none") : found.join(QLatin1Char(' '));
}

QStringList ResultsWindow::lines(int file) const
{
    QStringList texts;
    for (const auto &item : model.file(file)->children())
        texts << item->matchLine()->matchLineString();
    return texts;
}

void ResultsWindow::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&view, Qt::Key(key), modifiers);
}

void ResultsWindow::selectRows(const QList<int> &rows)
{
    view.selectionModel()->clearSelection();
    for (const int row : rows)
        view.selectRow(row, true);
}

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, LONGEST_WAIT);
}

} // namespace tidemark::test
