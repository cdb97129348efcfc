#include "window/ElidedLabel.h"

#include "window/PlainToolTip.h"

#include <QEvent>

namespace tidemark {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    // An empty line is as high as one with text, so that nothing jumps.
    setText(QStringLiteral(" "));
}

void ElidedLabel::setWholeText(const QString &text)
{
    _wholeText = text;
    setAccessibleName(text);
    _hug();
    _elide();
}

void ElidedLabel::setHuggingText(bool hugs)
{
    _hugsText = hugs;
    _hug();
}

void ElidedLabel::_hug()
{
    constexpr int MARGIN = 4;
    setMaximumWidth(_hugsText ? fontMetrics().horizontalAdvance(_wholeText) + MARGIN : QWIDGETSIZE_MAX);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height() + 2};
}

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    _elide();
}

void ElidedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        _elide();
}

void ElidedLabel::_elide()
{
    QString line = _wholeText;
    line.replace(u'\n', u' ');
    const QString shown = fontMetrics().elidedText(line, Qt::ElideMiddle, contentsRect().width());
    setToolTip(shown == line ? QString() : plainToolTip(_wholeText));
    setText(shown.isEmpty() ? QStringLiteral(" ") : shown);
}

} // namespace tidemark
