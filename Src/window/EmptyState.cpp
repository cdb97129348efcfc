#include "window/EmptyState.h"

#include "window/Colors.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <array>

namespace tidemark {

namespace {

constexpr int MARGIN_AROUND = 12;
constexpr int GAP_BETWEEN_PARTS = 6;
constexpr int ICON_SIZE = 48;

} // namespace

EmptyState::EmptyState(Symbol symbol, QWidget *parent)
    : QWidget(parent), _symbol(symbol), _picture(new QLabel(this)), _sentence(new QLabel(this)),
      _button(new QPushButton(this))
{
    _sentence->setTextFormat(Qt::PlainText);
    _sentence->setAlignment(Qt::AlignCenter);
    _sentence->setWordWrap(true);
    _picture->setAlignment(Qt::AlignCenter);
    _button->setObjectName(QStringLiteral("emptyStateButton"));
    _button->setAutoDefault(false);
    _button->hide();
    parent->installEventFilter(this);
    _useColors();
    connect(_button, &QPushButton::clicked, this, &EmptyState::buttonClicked);
}

/// It stands back behind rows.
void EmptyState::_useColors()
{
    const QPalette around = parentWidget()->palette();
    const QColor color = secondaryColor(around.color(QPalette::Text), around.color(QPalette::Base));
    _picture->setPixmap(drawnSymbol(_symbol, color).pixmap(ICON_SIZE, ICON_SIZE));
    QPalette faint = _sentence->palette();
    // Which of them labels take depends on what they lie on.
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
        faint.setColor(role, color);
    _sentence->setPalette(faint);
}

void EmptyState::setSentence(const QString &sentence)
{
    _sentence->setText(sentence);
    _arrange();
}

QString EmptyState::sentence() const
{
    return _sentence->text();
}

void EmptyState::setButton(const QString &text, const QString &toolTip)
{
    _button->setText(text);
    _button->setToolTip(toolTip);
    _arrange();
}

bool EmptyState::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        _arrange();
    return QWidget::eventFilter(watched, event);
}

void EmptyState::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    _arrange();
}

void EmptyState::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _arrange();
    else if (event->type() == QEvent::PaletteChange)
        _useColors();
}

void EmptyState::_arrange()
{
    setGeometry(parentWidget()->rect());
    const int width = std::max(0, this->width() - 2 * MARGIN_AROUND);
    struct Part
    {
        QWidget *widget;
        QSize size;
        bool isShown;
    };
    std::array<Part, 3> parts = {
        {{_picture, {ICON_SIZE, ICON_SIZE}, true},
         {_sentence, {width, _sentence->heightForWidth(width)}, true},
         {_button, _button->sizeHint(), !_button->text().isEmpty() && _button->sizeHint().width() <= width}}};
    const auto needed = [&parts] {
        int height = -GAP_BETWEEN_PARTS;
        for (const Part &part : parts)
            height += part.isShown ? part.size.height() + GAP_BETWEEN_PARTS : 0;
        return height;
    };
    for (const size_t first : {0, 2, 1}) {
        if (needed() > height())
            parts.at(first).isShown = false;
    }
    int y = (height() - needed()) / 2;
    for (const Part &part : parts) {
        part.widget->setVisible(part.isShown);
        if (!part.isShown)
            continue;
        part.widget->setGeometry((this->width() - part.size.width()) / 2, y, part.size.width(),
                                 part.size.height());
        y += part.size.height() + GAP_BETWEEN_PARTS;
    }
}

} // namespace tidemark
