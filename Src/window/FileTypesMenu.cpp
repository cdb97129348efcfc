#include "window/FileTypesMenu.h"

#include "foundation/LocalizedText.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace tidemark {

namespace {

void setIncluded(qsizetype position, const QString &title, bool isIncluded)
{
    QList<Kind> kinds = kindsInForce();
    if (position >= kinds.size() || kinds[position].title != title)
        return;
    kinds[position].include = isIncluded;
    setKindsInForce(kinds);
}

} // namespace

FileTypesMenu::FileTypesMenu(QWidget *parent) : QMenu(parent)
{
    setTitle(localizedString("File &Types"));
    connect(this, &QMenu::aboutToShow, this, &FileTypesMenu::_fill);
}

void FileTypesMenu::_fill()
{
    clear();
    addSection(localizedString("Kinds of files to search in folders"));
    const QList<Kind> kinds = kindsInForce();
    for (qsizetype position = 0; position < kinds.size(); ++position) {
        const QString title = kinds[position].title;
        QAction *action = addAction(QString(title).replace(u'&', QStringLiteral("&&")));
        action->setCheckable(true);
        action->setChecked(kinds[position].include);
        connect(action, &QAction::toggled, this,
                [position, title](bool isOn) { setIncluded(position, title, isOn); });
    }
}

bool FileTypesMenu::_toggleActiveKind()
{
    QAction *kind = activeAction();
    if (kind == nullptr || !kind->isCheckable())
        return false;
    kind->toggle();
    return true;
}

void FileTypesMenu::mouseReleaseEvent(QMouseEvent *event)
{
    if (actionAt(event->position().toPoint()) == nullptr || !_toggleActiveKind())
        QMenu::mouseReleaseEvent(event);
}

void FileTypesMenu::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || !_toggleActiveKind())
        QMenu::keyPressEvent(event);
}

QString includedKindTitles()
{
    QStringList titles;
    const QList<Kind> kinds = kindsInForce();
    for (const Kind &kind : kinds) {
        if (kind.include)
            titles << kind.title;
    }
    return titles.join(localizedString(", "));
}

} // namespace tidemark
