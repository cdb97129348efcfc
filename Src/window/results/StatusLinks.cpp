#include "window/results/StatusLinks.h"

#include "ui_MyDocument.h"

#include <QEvent>
#include <QHBoxLayout>

namespace tidemark {

StatusLinks::StatusLinks(Ui::MyDocument &ui, QObject *parent)
    : QObject(parent), _ui(ui), _ownRow(new QHBoxLayout)
{
    for (int place = 1; QWidget *link = _ui.statusRow->itemAt(place)->widget(); ++place)
        _links << link;
    auto *column = qobject_cast<QBoxLayout *>(_ui.resultsPane->layout());
    for (int place = 0; place < column->count(); ++place) {
        if (column->itemAt(place)->layout() == _ui.statusRow) {
            column->insertLayout(place + 1, _ownRow);
            break;
        }
    }
    _ownRow->addStretch(1);
    _ui.resultsPane->installEventFilter(this);
}

bool StatusLinks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        _arrange();
    return QObject::eventFilter(watched, event);
}

int StatusLinks::_neededWidth() const
{
    const ElidedLabel &text = *_ui.resultsStatusLabel;
    int width = text.fontMetrics().horizontalAdvance(text.wholeText());
    for (const QWidget *link : _links) {
        if (!link->isHidden())
            width += _ui.statusRow->spacing() + link->sizeHint().width();
    }
    // What the row has around a text, and in front of its spacer.
    return width + 2 * _ui.statusRow->spacing();
}

void StatusLinks::_arrange()
{
    const QMargins margins = _ui.resultsPane->layout()->contentsMargins();
    const int room = _ui.resultsPane->width() - margins.left() - margins.right();
    const bool areBelow = _neededWidth() > room;
    if (areBelow == _areBelow)
        return;
    _areBelow = areBelow;
    QHBoxLayout *from = areBelow ? _ui.statusRow : _ownRow;
    QHBoxLayout *to = areBelow ? _ownRow : _ui.statusRow;
    int place = areBelow ? 0 : 1;
    for (QWidget *link : _links) {
        from->removeWidget(link);
        to->insertWidget(place++, link);
    }
}

} // namespace tidemark
