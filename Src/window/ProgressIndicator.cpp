#include "window/ProgressIndicator.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace tidemark {

namespace {

constexpr int HEIGHT = 3;
constexpr int STEP_MILLISECONDS = 40;
constexpr double PERIOD_MILLISECONDS = 2400;
/// Of the width, while it moves to and fro.
constexpr double MOVING_PART = 0.25;

} // namespace

ProgressIndicator::ProgressIndicator(QWidget *parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
}

void ProgressIndicator::setShareDone(std::function<std::optional<double>()> shareDone)
{
    _shareDone = std::move(shareDone);
}

QSize ProgressIndicator::sizeHint() const
{
    return {0, HEIGHT};
}

QRectF ProgressIndicator::_bar() const
{
    if (const std::optional<double> share = _shareDone ? _shareDone() : std::nullopt)
        return {0, 0, width() * std::clamp(*share, 0.0, 1.0), double(height())};
    const double turn = double(_sinceShown.elapsed()) / PERIOD_MILLISECONDS;
    const double there = std::abs(2 * (turn - std::floor(turn)) - 1);
    return {(1 - there) * (1 - MOVING_PART) * width(), 0, MOVING_PART * width(), double(height())};
}

void ProgressIndicator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Active, QPalette::Highlight));
    QRectF bar = _bar();
    if (layoutDirection() == Qt::RightToLeft)
        bar.moveLeft(width() - bar.right());
    painter.drawRoundedRect(bar, HEIGHT / 2.0, HEIGHT / 2.0);
}

void ProgressIndicator::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != _timer.timerId())
        return QWidget::timerEvent(event);
    update();
}

void ProgressIndicator::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    _sinceShown.start();
    _timer.start(STEP_MILLISECONDS, this);
}

void ProgressIndicator::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    _timer.stop();
}

} // namespace tidemark
