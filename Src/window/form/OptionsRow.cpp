#include "window/form/OptionsRow.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int GAP_BETWEEN_OPTIONS = 14;
constexpr int GAP_AT_THE_END = 6;
constexpr int ROW_GAP = 4;

int widthOf(const QList<QWidget *> &controls, int gap)
{
    int width = 0;
    for (const QWidget *control : controls)
        width += control->sizeHint().width() + (width > 0 ? gap : 0);
    return width;
}

int heightOf(const QList<QWidget *> &controls)
{
    int height = 0;
    for (const QWidget *control : controls)
        height = std::max(height, control->sizeHint().height());
    return height;
}

} // namespace

OptionsRow::OptionsRow(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void OptionsRow::setControls(const QList<QWidget *> &controls, const QList<QWidget *> &atTheEnd)
{
    _controls = controls;
    _atTheEnd = atTheEnd;
    updateGeometry();
}

QList<QWidget *> OptionsRow::_visible(const QList<QWidget *> &controls) const
{
    QList<QWidget *> visible = controls;
    visible.removeIf([](const QWidget *control) { return control->isHidden(); });
    return visible;
}

QList<OptionsRow::Place> OptionsRow::_placesAt(int width) const
{
    const QList<QWidget *> controls = _visible(_controls);
    const QList<QWidget *> atTheEnd = _visible(_atTheEnd);
    const int rowHeight = heightOf(controls + atTheEnd);
    QList<Place> places;
    int x = 0;
    int y = 0;
    const auto place = [&](QWidget *control) {
        const QSize size = control->sizeHint();
        places << Place{control, QRect(QPoint(x, y + (rowHeight - size.height()) / 2), size)};
        x += size.width();
    };
    for (QWidget *control : controls) {
        if (x > 0 && x + GAP_BETWEEN_OPTIONS + control->sizeHint().width() > width) {
            x = 0;
            y += rowHeight + ROW_GAP;
        }
        x += x > 0 ? GAP_BETWEEN_OPTIONS : 0;
        place(control);
    }
    const int endWidth = widthOf(atTheEnd, GAP_AT_THE_END);
    if (endWidth > 0 && x > 0 && x + GAP_BETWEEN_OPTIONS + endWidth > width)
        y += rowHeight + ROW_GAP;
    x = std::max(0, width - endWidth);
    for (QWidget *control : atTheEnd) {
        place(control);
        x += GAP_AT_THE_END;
    }
    return places;
}

int OptionsRow::heightAt(int width) const
{
    const int rowHeight = heightOf(_visible(_controls + _atTheEnd));
    int bottom = 0;
    for (const Place &place : _placesAt(width)) {
        const int top = place.rect.center().y() - (rowHeight - 1) / 2;
        bottom = std::max(bottom, top + rowHeight);
    }
    return bottom;
}

QSize OptionsRow::sizeHint() const
{
    const int end = widthOf(_visible(_atTheEnd), GAP_AT_THE_END);
    const int whole =
        widthOf(_visible(_controls), GAP_BETWEEN_OPTIONS) + (end > 0 ? GAP_BETWEEN_OPTIONS + end : 0);
    return {whole, heightAt(_isPlaced ? width() : whole)};
}

QSize OptionsRow::minimumSizeHint() const
{
    int least = widthOf(_visible(_atTheEnd), GAP_AT_THE_END);
    for (const QWidget *control : _visible(_controls))
        least = std::max(least, control->sizeHint().width());
    return {least, sizeHint().height()};
}

void OptionsRow::_arrange()
{
    for (const Place &place : _placesAt(width()))
        place.control->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place.rect));
}

bool OptionsRow::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange ||
        event->type() == QEvent::FontChange) {
        updateGeometry();
        _arrange();
    }
    return handled;
}

void OptionsRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    _isPlaced = true;
    if (heightAt(width()) != height())
        updateGeometry();
    _arrange();
}

} // namespace tidemark
