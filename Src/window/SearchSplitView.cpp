#include "window/SearchSplitView.h"

#include "session/SplitViewLayout.h"

#include <QMouseEvent>
#include <QResizeEvent>
#include <QSplitterHandle>

#include <cmath>
#include <utility>

namespace tidemark {

namespace {

class SearchSplitHandle : public QSplitterHandle
{
public:
    explicit SearchSplitHandle(SearchSplitView *splitView)
        : QSplitterHandle(Qt::Vertical, splitView), _splitView(splitView)
    {
        setObjectName(QStringLiteral("splitHandle"));
    }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        _grabbedAt = event->position().toPoint().y();
        QSplitterHandle::mousePressEvent(event);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        const int position = _splitView->mapFromGlobal(event->globalPosition().toPoint()).y() - _grabbedAt;
        moveSplitter(_splitView->constrainedPosition(position));
    }

private:
    SearchSplitView *_splitView;
    int _grabbedAt = 0;
};

} // namespace

SearchSplitView::SearchSplitView(QWidget *parent) : QSplitter(Qt::Vertical, parent)
{
    setChildrenCollapsible(false);
}

int SearchSplitView::constrainedPosition(int proposedPosition) const
{
    return int(std::lround(
        SplitViewLayout::constrainSplitPosition(proposedPosition, window()->frameGeometry().height())));
}

QSplitterHandle *SearchSplitView::createHandle()
{
    return new SearchSplitHandle(this);
}

double SearchSplitView::_exactTopHeight() const
{
    const int shown = sizes().value(0);
    return std::lround(_topHeight) == shown ? _topHeight : shown;
}

void SearchSplitView::resizeEvent(QResizeEvent *event)
{
    const bool isLaidOut = count() == 2 && event->oldSize().height() > 0 && sizes().value(1) > 0;
    if (!isLaidOut) {
        QSplitter::resizeEvent(event);
        return;
    }
    const double top = _exactTopHeight();
    const double oldHeight = event->oldSize().height();
    SplitView panes;
    panes.dividerThickness = float(handleWidth());
    panes.top = {0, 0, double(event->oldSize().width()), top};
    panes.bottom = {0, top + handleWidth(), panes.top.width, oldHeight - top - handleWidth()};
    panes = SplitViewLayout::resizeSubviews(panes, oldHeight, width(), height());
    QSplitter::resizeEvent(event);
    _topHeight = panes.top.height;
    const int topPixels = int(std::lround(panes.top.height));
    setSizes({topPixels, height() - handleWidth() - topPixels});
}

void SearchSplitView::showEvent(QShowEvent *event)
{
    QSplitter::showEvent(event);
    // Only now everything around it has its place.
    if (const int top = std::exchange(_openingTop, 0); top > 0)
        setSizes({top, height() - handleWidth() - top});
}

} // namespace tidemark
