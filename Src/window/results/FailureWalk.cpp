#include "window/results/FailureWalk.h"

#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>

#include <algorithm>

namespace tidemark {

FailureWalk::FailureWalk(const ResultsTreeModel &model, TDSearchResultsOutlineView &view, QAction &showNext,
                         HasFailed hasFailed, QObject *parent)
    : QObject(parent), _model(model), _view(view), _showNext(showNext), _hasFailed(std::move(hasFailed))
{
    connect(&_showNext, &QAction::triggered, this, &FailureWalk::showNext);
    const FindResults &results = model.results();
    connect(&results, &FindResults::cleared, this, &FailureWalk::update);
    connect(&results, &FindResults::removed, this, &FailureWalk::update);
    connect(&results, &FindResults::thinnedOut, this, &FailureWalk::update);
    connect(&results, &FindResults::filtered, this, &FailureWalk::update);
    update();
}

void FailureWalk::update()
{
    const FindResultItems &files = _model.results().files();
    _count =
        std::count_if(files.begin(), files.end(), [this](const auto &file) { return _hasFailed(*file); });
    _showNext.setEnabled(_count > 0);
    Q_EMIT countChanged();
}

void FailureWalk::showNext()
{
    const int count = _model.rowCount();
    const QModelIndex selected = _view.selectedIndex();
    const QModelIndex selectedFile = selected.parent().isValid() ? selected.parent() : selected;
    const int start = selectedFile.isValid() ? selectedFile.row() + 1 : 0;
    for (int step = 0; step < count; ++step) {
        const int file = (start + step) % count;
        if (!_hasFailed(*_model.file(file)))
            continue;
        const int row = _view.rowOfIndex(_model.index(file, 0));
        _view.setFocus(Qt::OtherFocusReason);
        _view.selectRow(row);
        // What is wrong may stand in the row below.
        _view.scrollRowToVisible(row + 1);
        _view.scrollRowToVisible(row);
        return;
    }
}

} // namespace tidemark
