#include "window/results/LeftOutNotice.h"

#include "foundation/LocalizedText.h"
#include "session/LeftOutTexts.h"
#include "session/SearchControl.h"
#include "ui_MyDocument.h"
#include "window/PlainToolTip.h"

#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tidemark {

namespace {

/// A window that closes with a click beside it or with Escape, and whose text can be selected and copied.
class DetailsPopover : public QFrame
{
public:
    DetailsPopover(const QString &text, QWidget *parent) : QFrame(parent, Qt::Popup)
    {
        setObjectName(QStringLiteral("leftOutPopover"));
        setAttribute(Qt::WA_DeleteOnClose);
        setFrameShape(QFrame::StyledPanel);
        auto *details = new QLabel(text);
        details->setTextFormat(Qt::PlainText);
        details->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        details->setMargin(MARGIN);
        details->setAccessibleName(text);
        auto *area = new QScrollArea;
        area->setWidget(details);
        area->setFrameShape(QFrame::NoFrame);
        details->adjustSize();
        const QSize most = parent->screen()->availableSize() / 2;
        const int scrollBar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const QSize whole = details->size();
        area->setMinimumSize(
            qMin(whole.width() + (whole.height() > most.height() ? scrollBar : 0), most.width()),
            qMin(whole.height() + (whole.width() > most.width() ? scrollBar : 0), most.height()));
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(area);
        setFocusProxy(details);
    }

    /// Above the widget, where there is room.
    void openAt(const QWidget &widget)
    {
        adjustSize();
        const QRect room = widget.screen()->availableGeometry();
        QPoint corner = widget.mapToGlobal(QPoint(0, 0)) - QPoint(0, height());
        if (corner.y() < room.top())
            corner.setY(widget.mapToGlobal(QPoint(0, widget.height())).y());
        corner.setX(qBound(room.left(), corner.x(), qMax(room.left(), room.right() - width())));
        move(corner);
        show();
        setFocus(Qt::PopupFocusReason);
    }

private:
    static constexpr int MARGIN = 10;
};

} // namespace

LeftOutNotice::LeftOutNotice(Ui::MyDocument &ui, SearchControl &search, QObject *parent)
    : QObject(parent), _ui(ui), _search(search), _link(new QLabel(ui.searchResultsOutlineView->viewport()))
{
    _link->setObjectName(QStringLiteral("searchEverythingLabel"));
    _link->setTextFormat(Qt::RichText);
    _link->setWordWrap(true);
    _link->setAlignment(Qt::AlignCenter);
    _link->setFocusPolicy(Qt::StrongFocus);
    _link->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    _link->hide();
    _ui.searchResultsOutlineView->viewport()->installEventFilter(this);
    connect(_link, &QLabel::linkActivated, this, &LeftOutNotice::searchOfEverythingRequested);
    connect(_ui.leftOutButton, &QToolButton::clicked, this, &LeftOutNotice::_openDetails);
    connect(&_search, &SearchControl::searchWillStart, this, [this] {
        hide();
        _link->hide();
    });
    connect(&_search, &SearchControl::searchFinished, this, &LeftOutNotice::_showStatus);
}

void LeftOutNotice::hide()
{
    _ui.leftOutButton->hide();
    _ui.resultsStatusLabel->setHuggingText(false);
}

void LeftOutNotice::_showStatus()
{
    const LeftOut &leftOut = _search.leftOut();
    if (countInStatus(leftOut) == 0 && leftOut.brokenIgnoreFiles.isEmpty())
        return;
    _ui.leftOutButton->setText(leftOutStatus(leftOut));
    _ui.leftOutButton->setToolTip(plainToolTip(leftOutDetails(leftOut)));
    // On one line with the text, and the row is no higher for it.
    _ui.leftOutButton->setFixedHeight(_ui.resultsStatusLabel->minimumSizeHint().height());
    _ui.leftOutButton->show();
    // It stands right behind the text, which gives way where there is little room.
    _ui.resultsStatusLabel->setHuggingText(true);
}

void LeftOutNotice::_openDetails()
{
    auto *popover = new DetailsPopover(leftOutDetails(_search.leftOut()), _ui.leftOutButton);
    popover->openAt(*_ui.leftOutButton);
}

bool LeftOutNotice::showInEmptyResults(const QString &kinds)
{
    const quint64 count = wouldBeSearchedOnDemand(_search.leftOut());
    if (count == 0)
        return false;
    const QString text = nothingFoundText(_search.searchedFileCount(), count);
    _link->setText(text.toHtmlEscaped() + QStringLiteral("<br>") + kinds.toHtmlEscaped() +
                   QStringLiteral("<br><br><a href=\"everything\">") +
                   localizedString("Search Again with Everything").toHtmlEscaped() + QStringLiteral("</a>"));
    _link->setAccessibleName(text);
    _placeLink();
    _link->show();
    return true;
}

void LeftOutNotice::_placeLink()
{
    _link->setGeometry(_ui.searchResultsOutlineView->viewport()->rect());
}

bool LeftOutNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        _placeLink();
    return QObject::eventFilter(watched, event);
}

} // namespace tidemark
