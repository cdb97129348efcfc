#include "window/ProgressIndicator.h"

#include <QPainter>
#include <QTimerEvent>

namespace tidemark {

namespace {

constexpr int SPOKES = 12;
constexpr int STEP_MILLISECONDS = 80;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget *parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
}

QSize ProgressIndicator::sizeHint() const
{
    const int side = fontMetrics().height() + 2;
    return {side, side};
}

void ProgressIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect().toRectF().center());
    const double radius = qMin(width(), height()) / 2.0 - 1;
    QColor color = palette().color(QPalette::WindowText);
    for (int spoke = 0; spoke < SPOKES; ++spoke) {
        const int age = (_step - spoke + SPOKES) % SPOKES;
        color.setAlphaF(float(SPOKES - age) / SPOKES);
        painter.setPen(QPen(color, radius / 4, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QLineF(0, -radius, 0, -radius * 0.55));
        painter.rotate(360.0 / SPOKES);
    }
}

void ProgressIndicator::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != _timer.timerId())
        return QWidget::timerEvent(event);
    _step = (_step + 1) % SPOKES;
    update();
}

void ProgressIndicator::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    _timer.start(STEP_MILLISECONDS, this);
}

void ProgressIndicator::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    _timer.stop();
}

} // namespace tidemark
