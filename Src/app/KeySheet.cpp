#include "app/KeySheet.h"

#include "foundation/LocalizedText.h"
#include "window/TDMyDocumentController.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace tidemark {

namespace {

/// What stands in the menu, without the key behind it and without mnemonics.
QString plainText(const QAction &action)
{
    QString text = action.text().section(u'\t', 0, 0);
    for (qsizetype index = 0; index < text.size(); ++index) {
        // Of two the second one stays.
        if (text[index] == u'&')
            text.remove(index, 1);
    }
    return text;
}

QString keysOf(const QAction &action)
{
    const QString shortcuts = QKeySequence::listToString(action.shortcuts(), QKeySequence::NativeText)
                                  .replace(QLatin1String("; "), QLatin1String(", "));
    return shortcuts.isEmpty() ? action.text().section(u'\t', 1) : shortcuts;
}

void addCommandsOf(const QMenu &menu, QList<KeyGroup::Command> &commands)
{
    for (const QAction *action : menu.actions()) {
        if (action->menu() != nullptr)
            addCommandsOf(*action->menu(), commands);
        else if (const QString keys = keysOf(*action); !keys.isEmpty())
            commands << KeyGroup::Command{plainText(*action), keys};
    }
}

QList<KeyGroup::Command> commandsOfResults(const OutlineKeys &keys)
{
    QList<KeyGroup::Command> commands;
    for (const auto &[key, action] : keys.commands())
        commands << KeyGroup::Command{plainText(*action),
                                      QKeySequence(key).toString(QKeySequence::NativeText)};
    for (const OutlineKeys::CursorKey &key : OutlineKeys::cursorKeys())
        commands << KeyGroup::Command{localizedString(key.text),
                                      QKeySequence(key.key).toString(QKeySequence::NativeText)};
    return commands;
}

QString htmlOf(const QList<KeyGroup> &groups)
{
    QString html;
    for (const KeyGroup &group : groups) {
        html += QStringLiteral("<h3>%1</h3><table width=\"100%\">").arg(group.heading.toHtmlEscaped());
        for (const KeyGroup::Command &command : group.commands)
            html += QStringLiteral("<tr><td width=\"60%\">%1</td><td>%2</td></tr>")
                        .arg(command.text.toHtmlEscaped(), command.keys.toHtmlEscaped());
        html += QLatin1String("</table>");
    }
    return html;
}

} // namespace

QList<KeyGroup> keysOf(const QMenuBar &menus, TDMyDocumentController &controller)
{
    QList<KeyGroup> groups;
    for (const QAction *title : menus.actions()) {
        KeyGroup group{plainText(*title), {}};
        // Some menus are brought up to date as they open.
        if (title->menu() != nullptr)
            addCommandsOf(*title->menu(), group.commands);
        if (!group.commands.isEmpty())
            groups << group;
    }
    groups << KeyGroup{localizedString("While the results have the keyboard"),
                       commandsOfResults(controller.resultsPane().outlineView().keys())};
    return groups;
}

KeySheet::KeySheet(const QList<KeyGroup> &groups, QWidget *parent) : QTextBrowser(parent)
{
    setObjectName(QStringLiteral("keySheet"));
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(localizedString("Keyboard Shortcuts"));
    setAccessibleName(localizedString("Keyboard Shortcuts"));
    document()->setDocumentMargin(fontMetrics().height());
    setHtml(htmlOf(groups));
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 38);
    auto *closeAction = new QAction(this);
    closeAction->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
    connect(closeAction, &QAction::triggered, this, &QWidget::close);
    addAction(closeAction);
}

} // namespace tidemark
