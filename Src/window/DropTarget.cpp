#include "window/DropTarget.h"

#include "foundation/LocalizedText.h"
#include "ui_MyDocument.h"
#include "window/Colors.h"
#include "window/SearchWindow.h"
#include "window/locations/SearchLocationsController.h"
#include "window/locations/TDTableViewDragDropArrayController.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QPainter>

namespace tidemark {

namespace {

constexpr int FRAME_WIDTH = 3;
constexpr int ROUNDING = 6;
constexpr int FRAME_MARGIN = 12;
constexpr double VEIL = 0.12;

/// A frame around everything, and what a drop does in its middle. The mouse doesn't notice it.
class DropMark : public QWidget
{
public:
    explicit DropMark(QWidget *parent) : QWidget(parent)
    {
        setObjectName(QStringLiteral("dropMark"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor highlight = palette().color(QPalette::Active, QPalette::Highlight);
        QColor veil = highlight;
        veil.setAlphaF(float(VEIL));
        painter.setPen(QPen(highlight, FRAME_WIDTH));
        painter.setBrush(veil);
        const int inset = FRAME_WIDTH;
        painter.drawRoundedRect(rect().adjusted(inset, inset, -inset, -inset), ROUNDING, ROUNDING);
        const QString text = localizedString("Drop to search here");
        QRect plate = fontMetrics().boundingRect(text).adjusted(-2 * FRAME_MARGIN, -FRAME_MARGIN,
                                                                2 * FRAME_MARGIN, FRAME_MARGIN);
        plate.moveCenter(rect().center());
        painter.setPen(highlight);
        painter.setBrush(palette().color(QPalette::Base));
        painter.drawRoundedRect(plate, ROUNDING, ROUNDING);
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(plate, Qt::AlignCenter, text);
    }
};

} // namespace

DropTarget::DropTarget(SearchWindow &window, TDTableViewDragDropArrayController &locations,
                       SearchLocationsController &controller, QObject *parent)
    : QObject(parent), _window(window), _locations(locations), _controller(controller),
      _mark(new DropMark(window.centralWidget()))
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    window.ui().searchLocationsTableView->viewport()->installEventFilter(this);
    const auto fields = window.findChildren<QLineEdit *>();
    for (QLineEdit *field : fields)
        field->installEventFilter(this);
}

bool DropTarget::_takes(const QDropEvent &event) const
{
    const QMimeData &data = *event.mimeData();
    return data.hasUrls() && !_locations.isReadOnly() && _controller.acceptsDrops() &&
           _locations.validateDrop(data, DragSource::Elsewhere, 0, DropOperation::Above).operation !=
               DragOperation::None;
}

bool DropTarget::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return _handle(watched, *static_cast<QDropEvent *>(event));
    case QEvent::DragLeave:
        _mark->hide();
        return false;
    default:
        return false;
    }
}

bool DropTarget::_handle(QObject *watched, QDropEvent &event)
{
    const bool isTaken = _takes(event);
    _mark->setGeometry(_window.centralWidget()->rect());
    _mark->setVisible(isTaken && event.type() != QEvent::Drop);
    _mark->raise();
    // The list has a way of its own, by which its rows are dragged too.
    if (!isTaken || watched == _window.ui().searchLocationsTableView->viewport())
        return false;
    // Files stay where they are, whatever the file manager proposes.
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (event.type() == QEvent::Drop)
        _locations.acceptDrop(*event.mimeData(), DragSource::Elsewhere, _locations.rowCount());
    return true;
}

} // namespace tidemark
