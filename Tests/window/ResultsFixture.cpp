#include "window/ResultsFixture.h"

namespace tidemark::test {

std::shared_ptr<TDFindResultItem> fileNode(const QByteArray &path, const QStringList &lines)
{
    auto file = TDFindResultItem::initWithFile(FilePath(path), {}, QStringLiteral("foo"), false);
    MatchLines matchLines;
    FindResultItems items;
    for (const QString &text : lines) {
        auto line = std::make_shared<TDMatchLine>();
        line->setMatchLineString(text);
        line->setLineNumber(matchLines.size() + 1);
        for (qsizetype found = text.indexOf(QLatin1String("foo")); found >= 0;
             found = text.indexOf(QLatin1String("foo"), found + 3))
            line->appendMatchRange({found, 3});
        matchLines << line;
        items << TDFindResultItem::initWithMatchLine(line, file.get());
    }
    auto highlighter = std::make_shared<TDMatchLineHighlighter>();
    highlighter->setMatchLines(matchLines);
    file->setMatchLineHighlighter(highlighter);
    file->setMatchLines(items);
    return file;
}

std::shared_ptr<TDFindResultItem> failedFileNode(const QByteArray &path, const QString &reason)
{
    const TDError error = TDError::initalizePresentErrorWithCode(4, QStringLiteral("It failed."), reason);
    return TDFindResultItem::initWithFailedFile(FilePath(path), {}, error);
}

ResultsWindow::ResultsWindow(ApplicationDelegate &application, const FindResultItems &files)
    : OpenWindow(application)
{
    ResultsNavigation::setShowHideState(false);
    results.append(files);
    view.setFocus();
    EXPECT_TRUE(waitFor([this] { return view.hasFocus(); }));
}

QString ResultsWindow::selection() const
{
    QStringList rows;
    for (const auto &item : navigation.selectedObjects()) {
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
            const TDMatchLine *line = item->matchLine();
            if (line != nullptr && line->highlightedMatchIndex() >= 0)
                found << QStringLiteral("%1:%2:%3")
                             .arg(row)
                             .arg(item->position())
                             .arg(line->highlightedMatchIndex());
        }
    }
    EXPECT_LE(found.size(), 1);
    return found.isEmpty() ? QStringLiteral("none") : found.join(QLatin1Char(' '));
}

void ResultsWindow::pressKey(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&view, Qt::Key(key), modifiers);
}

} // namespace tidemark::test
