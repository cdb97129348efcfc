#include "window/ResultsFixture.h"

namespace tidemark::test {

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
    for (const auto &item : navigation.selection().selectedObjects()) {
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
